#pragma once

#include "support/MainHarness.h"

#include <QFileDialog>
#include <QPointer>
#include <QStringList>
#include <QTimer>

// Answers the file dialog "CD1" while it lives: each dialog that opens gets the
// next of the given files (selected, then accepted); once they are used up, the
// dialog is cancelled. A message box that comes up meanwhile is closed with OK and
// its text kept. The dialog is found by polling the modal widget, so the command
// that opens it can be run synchronously by the test.
class FileDialogAnswerer {
public:
    explicit FileDialogAnswerer(QStringList files = {});
    FileDialogAnswerer(const FileDialogAnswerer &) = delete;
    FileDialogAnswerer &operator=(const FileDialogAnswerer &) = delete;

    int dialogsSeen() const { return seen_; }
    QStringList messageBoxes() const { return messages_; }

    // The first dialog as it was shown, before it was answered.
    struct Shown {
        bool nonNative = false;
        QFileDialog::AcceptMode acceptMode = QFileDialog::AcceptOpen;
        QFileDialog::FileMode fileMode = QFileDialog::AnyFile;
        QString directory;
        QStringList nameFilters;
        QString defaultSuffix;
    };
    Shown first() const { return first_; }

private:
    void poll();

    QStringList files_;
    QTimer timer_;
    QPointer<QFileDialog> current_;
    bool answering_ = false;
    int seen_ = 0;
    QStringList messages_;
    Shown first_;
};

// One satellite section of a configuration file.
struct SatelliteRecord {
    qint16 satId;
    qint16 interfaceCode = 1;
    qint16 enabled = 1;
};

// A complete configuration file as the program writes it (CR LF, the sixteen
// satellite sections padded with SatId 9999).
struct ConfigSpec {
    QByteArray commPort = "COM1";
    qint16 timeOut = 100;
    qint16 firstDevice = 10;
    qint16 lastDevice = 12;
    QList<SatelliteRecord> satellites;
};
QByteArray configFileBytes(const ConfigSpec &spec);

// The control's satellites as "SatId/Interface/Enabled", in list order.
QStringList satellitesOf(RadioNetControl &net);
// The control's declared terminal numbers, in list order.
QList<qint16> terminalsOf(RadioNetControl &net);

// The four recent-file items as the File menu shows them: the caption of a visible
// item, "" for a hidden item without caption; anything else is marked as wrong.
QStringList recentMenu(MainHarness &h);
// "File1" to "File4" as "Setup.ini" holds them.
QStringList recentSettings(const ProgramFolder &folder);

// The File menu drops down (its own handler runs).
void dropFileMenu(MainHarness &h);

// The path of the backup a save makes of fileName: cut at the first "." of the path.
QString backupOf(const QString &fileName);
