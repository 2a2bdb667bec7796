#pragma once

#include "app/Main.h"
#include "radionet/SimulatedRadioNet.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPointer>
#include <QTemporaryDir>
#include <QtTest>
#include <functional>
#include <initializer_list>
#include <memory>

class QFileDialog;

// A scratch program folder per test: "Setup.ini" and configuration files go there.
class ProgramFolder {
public:
    QString path() const { return dir_.path(); }
    QString file(const QString &name) const { return dir_.filePath(name); }
    QByteArray read(const QString &name) const;
    void write(const QString &name, const QByteArray &bytes) const;

private:
    QTemporaryDir dir_;
};

// The bytes of a file of tests/data.
QByteArray referenceFile(const QString &name);
// The configuration file of tests/data (COM1, time-out 100, terminals 10 to 12,
// satellites 5/1/1, 7/0/0, 1999/1/1) with each (text, replacement) applied in turn.
QByteArray goldenWith(const QList<std::pair<QByteArray, QByteArray>> &edits = {});
// "Setup.ini" as the program writes it.
QByteArray settingsFile(const QByteArray &language, const QStringList &files = {},
                        const QByteArray &version = "TALMOR NORVALE CONFIGURATION FILE");
// The value of a key of an initialisation file, "" when missing; "File1" to "File4"
// of the "Setup.ini" of a folder.
QString keyOf(const QString &file, const char *section, const char *key);
QStringList recentSettings(const ProgramFolder &folder);

// The control's satellites as "SatId/Interface/Enabled", and its terminal numbers.
QStringList satellitesOf(RadioNetControl &net);
QStringList terminalsOf(RadioNetControl &net);
// A preparation of the simulator: only these satellites on the air.
std::function<void(SimulatedRadioNet &)> onAir(const QList<OnAirSatellite> &satellites);
// Waits until everything the simulator has queued has been delivered, and what was
// asked for meanwhile. False on time-out.
bool settleNetwork(SimulatedRadioNet &net, int timeoutMs = 10000);

// Answers the file dialog "CD1" while it lives: each dialog that comes up gets the
// next of the given files (typed, then accepted), or is cancelled once they are
// used up. Found by polling the modal widget, so the command that opens it runs
// synchronously in the test.
class FileDialogAnswerer {
public:
    explicit FileDialogAnswerer(QStringList files = {});
    int dialogsSeen() const { return seen_; }
    // The first dialog as shown: "open" or "save", "existing" or "any" file, "own" or
    // "native" dialog, its folder, name filters and default suffix.
    QStringList firstShown() const { return first_; }

private:
    QStringList files_;
    QTimer timer_;
    QPointer<QFileDialog> current_;
    int seen_ = 0;
    QStringList first_;
};

// A main window on a simulated network, in a scratch program folder unless one is
// given, as a test drives it: widgets by objectName, the status panels, focus
// loss, clicks, keys. The simulator answers at once (still through the event loop)
// unless `prepare`, run before the window starts up, changes it.
class MainHarness {
public:
    explicit MainHarness(const QString &commandLine = {},
                         const std::function<void(SimulatedRadioNet &)> &prepare = {},
                         const ProgramFolder *folder = nullptr);

    Main &main() { return *main_; }
    SimulatedRadioNet &net() { return *net_; }
    const ProgramFolder &folder() const { return *folder_; }

    template <typename T = QWidget> T *w(const char *name) {
        T *found = main_->findChild<T *>(QString::fromLatin1(name));
        if (!found)
            qFatal("no widget named %s", name);
        return found;
    }
    QString panel1() { return w<QLabel>("StatusPanel1")->text(); }
    QString panel2() { return w<QLabel>("StatusPanel2")->text(); }
    // The texts panel 2 showed, each time the window turned to the network and now:
    // also those replaced within the same handler.
    QStringList panel2History();
    // What the named objects show: a combo box's text, a frame's or menu's title, the
    // text of anything else; with "?" whether it is enabled, with "!" whether it is
    // visible, with "#" a check box's state, a tab control's index, an action's tick or
    // a timer's activity. Also "log" (the call log), "said" (what panel 2 was given
    // since act last emptied the call log), "sats" (the control's satellites), "MFG1"
    // (the network view's values), "MFG2:n" (row n of the test view) and "recent" (the
    // recent-file items: a visible item's caption, "" for a hidden one without one).
    QStringList shown(std::initializer_list<const char *> names);
    // The same joined with " | ".
    QString state(std::initializer_list<const char *> names);

    // Runs blank-separated steps ("_" stands for a blank in a text), delivering what
    // the network raised after each: "Name=text" sets a line edit's, combo box's or
    // label's text, a check box's state, a tab control's index or every cell of a grid
    // but the fixed ones, without leaving the widget; "Name" clicks a push button,
    // triggers an action, drops a menu down or leaves any other widget;
    // "~error:n:text", "~answered:id:text", "~config:id" and "~status:id" raise a
    // network event, "~state:n" (or "~state:-") sets the reported link state, "~add:id"
    // adds a satellite to the control's list, "~log" empties the call log and starts
    // "said" afresh.
    void act(const QString &steps);
    // The widget's LostFocus handler runs, as when the user leaves it.
    void leave(const char *name);
    void click(const char *name) { w<QAbstractButton>(name)->click(); }
    // File > Open answered with the file; the dialog as it was shown.
    QStringList open(const QString &file);

    // Waits until everything the simulator has queued has been delivered, and what
    // the handlers asked for meanwhile. False on time-out.
    bool settle(int timeoutMs = 10000);

private:
    QString shownBy(QString name);

    std::unique_ptr<ProgramFolder> ownFolder_;
    const ProgramFolder *folder_;
    SimulatedRadioNet *net_ = nullptr;
    std::unique_ptr<Main> main_;
    qsizetype said_ = 0;
};

// Runs an action after the window's own handler of each tick of a timer, given the
// number of the tick (1 for the first). Disconnected when destroyed.
class TickHook {
public:
    TickHook(QTimer *timer, std::function<void(int tick)> action);
    int ticks() const { return *ticks_; }

private:
    std::shared_ptr<int> ticks_ = std::make_shared<int>(0);
    QObject context_;
};
