#pragma once

#include "platform/OwnTexts.h"
#include "radionet/NetworkLog.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <vector>

// What a commissioning run found, as a report shows it: the survey of a network
// against its configuration file, or a live test of it.
struct CommissioningReport {
    enum class Kind { Survey, Test };
    Kind kind = Kind::Survey;
    QDateTime when;   // local time of the run
    QString file;     // the configuration file, as given
    QString network;  // "Simulated network" or "Serial line /dev/ttyUSB0"
    QString port;     // CommPort
    QString baudRate; // BaudRate
    int rounds = 0;   // test: rounds run

    // One row per satellite: those of the file, by position, then those found on the
    // air that the file does not list.
    struct Row {
        int position = 0; // in the file, 1-based; 0 for one that only answered
        qint16 satId = 0; // as the file gives it (or as it answered)
        enum class State { Matches, Differs, Missing, Unexpected, Duplicate };
        State state = State::Matches;
        // Expected (the file) and found (the air); empty when not known.
        QString expectedInterface, foundInterface; // "RS-232" / "RS-485"
        QString expectedEnabled, foundEnabled;     // "1" / "0"
        QString identity, firmware;                // "QX NORVALE 3", "3.1"
        QString rxFree, txFree;                    // kilobytes
        QStringList differences;                   // one line each, a technician's words
    };
    std::vector<Row> rows;
    QStringList notes; // anything else worth saying (a link failure, duplicated Sat IDs)
    std::vector<NetworkLog::Health> health;

    bool clean() const; // nothing differs, nothing missing, nothing unexpected
};

// The state's name in a report: "matches", "differs", "missing", "unexpected",
// "duplicate".
QString stateName(CommissioningReport::Row::State state);

// Writes the report in the format its file name ends in (.html, .pdf or .json), its
// words in the language given (JSON keys stay English), through a temporary file
// renamed into place, so that a failed write leaves no half report and never
// replaces an existing one with less. False with a reason in error.
// A PDF is painted by the module given, loaded.
class PdfModule;
bool writeReport(const CommissioningReport &report, const QString &fileName,
                 OwnTexts::Language language, QString &error, const PdfModule *pdf = nullptr);
