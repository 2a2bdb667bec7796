#pragma once

#include "app/Main.h"
#include "radionet/SimulatedRadioNet.h"
#include "support/TestSupport.h"

#include <QAbstractButton>
#include <QLabel>
#include <QtTest>
#include <memory>

// A main window on a simulated network in a scratch program folder, as a test
// drives it: widgets by objectName, the status panels, focus loss, clicks.
class MainHarness {
public:
    // The simulator answers at once (still through the event loop) unless the test
    // changes it; `prepare` runs before the window starts up.
    explicit MainHarness(const QString &commandLine = QString(),
                         const std::function<void(SimulatedRadioNet &)> &prepare = {});
    // Starts a window in an existing folder (settings and files kept from before).
    MainHarness(const ProgramFolder &folder, const QString &commandLine,
                const std::function<void(SimulatedRadioNet &)> &prepare = {});

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

    // The widget's LostFocus handler runs, as when the user leaves it.
    void leave(const char *name);
    void click(const char *name) { w<QAbstractButton>(name)->click(); }
    void trigger(const char *actionName);
    // Types a whole text into a line edit or an editable combo box, then leaves it.
    void typeAndLeave(const char *name, const QString &text);

private:
    std::unique_ptr<ProgramFolder> ownFolder_;
    const ProgramFolder *folder_;
    SimulatedRadioNet *net_ = nullptr;
    std::unique_ptr<Main> main_;
};
