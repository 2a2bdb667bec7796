#include "cli/Commands.h"
#include "commissioning/SatelliteProbe.h"
#include "config/ConfigFile.h"
#include "radionet/SimulatedRadioNet.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

namespace {

// A configuration as the reader understood it.
struct Configuration {
    QString commPort, baudRate;
    bool enabled = false;
    qint32 synchro = 0;
    qint16 timeOut = 0, mode = 0;
    bool sendToPc = false;
    qint16 timeNotify = 0, timeGoingOn = 0;
    QList<qint16> terminals;
    std::vector<FileSatellite> satellites;
};

// The file read by the program's own reader; nothing, with the reason said on
// standard error, when it refuses it.
std::optional<Configuration> readFile(const QString &file, const Console &console) {
    SimulatedRadioNet net;
    ConfigProblem why;
    if (!ReadConfigFile(file, net, &why)) {
        console.err(problemText(console, file, why));
        return std::nullopt;
    }
    Configuration c;
    c.commPort = net.CommPort();
    c.baudRate = net.BaudRate();
    c.enabled = net.Enabled();
    c.synchro = net.Synchro();
    c.timeOut = net.TimeOut();
    c.mode = net.Mode();
    net.GetNotification(c.sendToPc, c.timeNotify, c.timeGoingOn);
    for (qint16 i = 1; i <= net.Devices().Count(); ++i)
        c.terminals.append(net.Devices().Item(i)->Number());
    c.satellites = fileSatellites(net);
    return c;
}

QString yesNo(const Console &console, bool flag) {
    return console(flag ? "CliYes" : "CliNo");
}

QString terminalsText(const Console &console, const QList<qint16> &terminals) {
    if (terminals.isEmpty())
        return console("CliNone");
    return console("CliTerminalRange", terminals.first(), terminals.last(), terminals.size());
}

// The general part as a technician reads it: a label and a value a line.
QList<QStringList> generalRows(const Console &console, const Configuration &c) {
    return {
        {console("CliPort"), c.commPort},
        {console("CliBaud"), c.baudRate},
        {console("CliEnabled"), yesNo(console, c.enabled)},
        {console("CliSynchro"), QString::number(c.synchro)},
        {console("CliTimeOut"), console("CliMs", c.timeOut)},
        {console("CliMode"), QString::number(c.mode)},
        {console("CliSendToPc"), yesNo(console, c.sendToPc)},
        {console("CliTimeNotify"), QString::number(c.timeNotify)},
        {console("CliTimeGoingOn"), QString::number(c.timeGoingOn)},
        {console("CliTerminals"), terminalsText(console, c.terminals)},
    };
}

QStringList satelliteCells(const Console &console, const FileSatellite &s) {
    return {QString::number(s.position), QString::number(s.satId), interfaceName(s.interfaceCode),
            yesNo(console, s.enabled != 0)};
}

QJsonObject json(const QString &file, const Configuration &c) {
    QJsonArray satellites;
    for (const FileSatellite &s : c.satellites)
        satellites.append(QJsonObject{{"position", s.position},
                                      {"satId", s.satId},
                                      {"interface", interfaceName(s.interfaceCode)},
                                      {"interfaceCode", s.interfaceCode},
                                      {"enabled", s.enabled}});
    QJsonObject terminals{{"count", c.terminals.size()}};
    if (!c.terminals.isEmpty()) {
        terminals["first"] = c.terminals.first();
        terminals["last"] = c.terminals.last();
    }
    return QJsonObject{{"file", file},
                       {"general", QJsonObject{{"commPort", c.commPort},
                                               {"baudRate", c.baudRate},
                                               {"enabled", c.enabled},
                                               {"synchro", c.synchro},
                                               {"timeOut", c.timeOut},
                                               {"mode", c.mode},
                                               {"sendToPc", c.sendToPc},
                                               {"timeNotify", c.timeNotify},
                                               {"timeGoingOn", c.timeGoingOn}}},
                       {"terminals", terminals},
                       {"satellites", satellites}};
}

} // namespace

QString problemText(const Console &console, const QString &file, const ConfigProblem &why) {
    using Kind = ConfigProblem::Kind;
    const QString where = why.line > 0 ? QStringLiteral("%1:%2").arg(file).arg(why.line) : file;
    QString reason;
    switch (why.kind) {
    case Kind::None:
    case Kind::ControlFailed:
        reason = console("CliProblemOther", why.found);
        break;
    case Kind::FileMissing:
        reason = console("CliProblemMissing");
        break;
    case Kind::NotAFile:
        reason = console("CliProblemNotAFile");
        break;
    case Kind::Unreadable:
        reason = console("CliProblemUnreadable", why.found);
        break;
    case Kind::TooLarge:
        reason = console("CliProblemTooLarge", why.found, MaxIniFileSize);
        break;
    case Kind::Binary:
        reason = console("CliProblemBinary");
        break;
    case Kind::SectionMissing:
        reason = console("CliProblemSection", why.section);
        break;
    case Kind::SectionBlanks:
        reason = console("CliProblemSectionBlanks", why.section, why.found.trimmed());
        break;
    case Kind::KeyMissing:
        reason = console("CliProblemKey", why.section, why.key);
        break;
    case Kind::KeyBlanks:
        reason = console("CliProblemKeyBlanks", why.section, why.key, why.found.trimmed());
        break;
    case Kind::KeyInRepeat:
        reason = console("CliProblemKeyRepeat", why.section, why.key, why.sectionLine);
        break;
    case Kind::EmptyValue:
        reason = console("CliProblemEmpty", why.section, why.key);
        break;
    case Kind::NumberTooLarge:
        reason = why.low < why.high ? console("CliProblemRange", why.section, why.key,
                                              why.found.trimmed(), why.low, why.high)
                                    : console("CliProblemHuge", why.section, why.key);
        break;
    }
    return where + QStringLiteral(": ") + reason;
}

int runCheck(const Invocation &inv, Console &console) {
    int exit = Success;
    for (const QString &file : inv.files) {
        SimulatedRadioNet net;
        ConfigProblem why;
        if (ReadConfigFile(file, net, &why)) {
            console.out(console("CliAccepted", file, net.Satellites().Count()));
        } else {
            console.out(problemText(console, file, why));
            exit = Different;
        }
    }
    return exit;
}

int runShow(const Invocation &inv, Console &console) {
    const QString &file = inv.files.first();
    const std::optional<Configuration> c = readFile(file, console);
    if (!c)
        return Different;
    if (inv.json) {
        console.out(QString::fromUtf8(QJsonDocument(json(file, *c)).toJson()).trimmed());
        return Success;
    }
    QList<QStringList> rows{{console("CliFile"), file}};
    rows += generalRows(console, *c);
    rows.append({console("CliSatellites"), QString::number(c->satellites.size())});
    console.table(rows);
    if (c->satellites.empty())
        return Success;
    console.out(QString());
    QList<QStringList> satellites{{console("CliPosition"), console("CliSatId"),
                                   console("CliInterface"), console("CliEnabled")}};
    for (const FileSatellite &s : c->satellites)
        satellites.append(satelliteCells(console, s));
    console.table(satellites);
    return Success;
}

int runDiff(const Invocation &inv, Console &console) {
    const std::optional<Configuration> a = readFile(inv.files[0], console);
    const std::optional<Configuration> b = readFile(inv.files[1], console);
    if (!a || !b)
        return Different;
    // By meaning: both sides as the reader took them, in the same words.
    QList<QStringList> rows{{QString(), inv.files[0], inv.files[1]}};
    const QList<QStringList> generalA = generalRows(console, *a);
    const QList<QStringList> generalB = generalRows(console, *b);
    for (qsizetype i = 0; i < generalA.size(); ++i) {
        if (generalA[i][1] != generalB[i][1])
            rows.append({generalA[i][0], generalA[i][1], generalB[i][1]});
    }
    const std::size_t count = std::max(a->satellites.size(), b->satellites.size());
    const auto summary = [&](const std::vector<FileSatellite> &list, std::size_t i) {
        if (i >= list.size())
            return QStringLiteral("-");
        const QStringList cells = satelliteCells(console, list[i]);
        return console("CliSatelliteSummary", cells[1], cells[2], cells[3]);
    };
    for (std::size_t i = 0; i < count; ++i) {
        const QString satellite = console("CliSatelliteAt", i + 1);
        if (i >= a->satellites.size() || i >= b->satellites.size()) {
            rows.append({satellite, summary(a->satellites, i), summary(b->satellites, i)});
            continue;
        }
        const QStringList cellsA = satelliteCells(console, a->satellites[i]);
        const QStringList cellsB = satelliteCells(console, b->satellites[i]);
        const char *columns[] = {nullptr, "CliSatId", "CliInterface", "CliEnabled"};
        for (int c = 1; c < 4; ++c) {
            if (cellsA[c] != cellsB[c])
                rows.append({satellite + u' ' + console(columns[c]), cellsA[c], cellsB[c]});
        }
    }
    if (rows.size() == 1) {
        console.out(console("CliSame"));
        return Success;
    }
    console.table(rows);
    return Different;
}
