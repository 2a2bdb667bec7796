#pragma once

#include <QString>
#include <QtGlobal>

class LanguageTable;

// The program's shared variables, under the names every part of the program uses.
// One instance per main window, handed by reference to whoever reads or writes them.
struct Globale {
    QString ProgramFolder; // where the program and "Setup.ini" live
    QString SettingsPath;  // full path of "Setup.ini"
    QString CurrentLanguage = QStringLiteral("US");
    QString RecentFile1, RecentFile2, RecentFile3, RecentFile4;
    QString ConfigFileName;
    qint16 LanguageBase = 0; // 0 French, 100 English
    qint16 CurrentSatelliteIndex = 1;
    qint16 RequestMode = 0; // 0 none, 1 network view read-back, 4 test cycle
    qint16 NetErrorCode = 0;
    qint16 LastSatId = 0;
    qint16 LastLinkState = 0;
    qint16 WaitTicks = 0;
    bool PortOpen = false;
    bool PollingActive = false;
    bool SendToPc = true;
    qint16 TimeNotify = 1;
    qint16 TimeGoingOn = 10;
    qint16 FirstDevice = 0;
    qint16 LastDevice = 0;
    qint16 TerminalRangeStatus = 0; // 0 valid, 2 invalid
};

// The language-table lookup: a text is fetched as LanguageBase + its French id,
// at the moment it is shown.
class Texts {
public:
    Texts(const LanguageTable &table, const Globale &g)
        : table_(table)
        , g_(g) {}
    QString operator()(int frenchId) const;

private:
    const LanguageTable &table_;
    const Globale &g_;
};
