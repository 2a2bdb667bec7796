#pragma once

#include "support/MainHarness.h"

#include <QFileDialog>
#include <QMenu>
#include <QPointer>
#include <QTimer>

// Answers the file dialog "CD1" while it lives: each time a dialog is waiting it
// gets the next of the given files (typed, then accepted); once they are used up,
// it is cancelled. A message box that comes up meanwhile is closed with OK and its
// text kept. The dialog is found by polling the modal widget, so the command that
// opens it can be run synchronously by the test.
class FileDialogAnswerer {
public:
    explicit FileDialogAnswerer(QStringList files = {});
    FileDialogAnswerer(const FileDialogAnswerer &) = delete;
    FileDialogAnswerer &operator=(const FileDialogAnswerer &) = delete;

    int dialogsSeen() const { return seen_; }
    QStringList messageBoxes() const { return messages_; }
    // The first dialog as it was shown: "open" or "save", "existing" or "any" file,
    // "own" or "native" dialog, its folder, name filters and default suffix.
    QStringList firstShown() const { return first_; }

private:
    void poll();

    QStringList files_;
    QTimer timer_;
    QPointer<QFileDialog> current_;
    bool answering_ = false;
    int seen_ = 0;
    QStringList messages_;
    QStringList first_;
};

// The file dialog as both file commands show it, but for its accept mode.
QStringList fileDialogAsDesigned(const char *mode, const ProgramFolder &folder);
// Runs File > Open and answers its dialog with file; shown, if given, receives the
// dialog as it was shown.
void openThroughDialog(MainHarness &h, const QString &file, QStringList *shown = nullptr);
// The File menu drops down (its own handler runs).
inline void dropFileMenu(MainHarness &h) {
    emit h.w<QMenu>("mFichier")->aboutToShow();
}

// The configuration file of tests/data (COM1, time-out 100, terminals 10 to 12,
// satellites 5/1/1, 7/0/0, 1999/1/1) with each (text, replacement) applied in turn.
QByteArray goldenWith(const QList<std::pair<QByteArray, QByteArray>> &edits = {});
// "Setup.ini" as the program writes it.
QByteArray settingsFile(const QByteArray &language, const QStringList &files = {},
                        const QByteArray &version = "TALMOR NORVALE CONFIGURATION FILE");

// The control's satellites as "SatId/Interface/Enabled", and its terminal numbers.
QStringList satellitesOf(RadioNetControl &net);
QList<qint16> terminalsOf(RadioNetControl &net);

// The four recent-file items as the File menu shows them: the caption of a visible
// item, "" for a hidden item without caption; anything else is marked as wrong.
QStringList recentMenu(MainHarness &h);
// "File1" to "File4" as "Setup.ini" holds them.
QStringList recentSettings(const ProgramFolder &folder);
// What the named widgets show: a combo box's current text, a frame's or menu's
// title, the text of anything else (a label, a line edit, a button, a menu item).
QStringList shown(MainHarness &h, std::initializer_list<const char *> names);

// The value of a key of an initialisation file, "" when missing.
QString keyOf(const QString &file, const char *section, const char *key);

// The path of the backup a save makes of fileName: cut at the first "." of the path.
inline QString backupOf(const QString &fileName) {
    return fileName.left(fileName.indexOf(u'.')) + QStringLiteral(".bak");
}
