#include "cli/Commands.h"
#include "commissioning/LiveTest.h"
#include "commissioning/Reconfiguration.h"
#include "commissioning/Report.h"
#include "commissioning/Survey.h"
#include "config/ConfigFile.h"
#include "radionet/Air.h"
#include "radionet/SerialRadioNet.h"

#include <QDateTime>
#include <algorithm>
#include <functional>
#include <memory>

namespace {

// The network of the options, with the file's link parameters when a file is
// given, opened. Nothing, with the exit code set, when that failed.
std::unique_ptr<NetSession> openSession(const Invocation &inv, Console &console, int &exit) {
    QString problem;
    std::unique_ptr<NetSession> session = NetSession::make(inv.link.choice, inv.language, problem);
    if (!session) {
        console.err(console("ScenarioUnread", problem));
        exit = Different;
        return nullptr;
    }
    if (!inv.files.isEmpty()) {
        ConfigProblem why;
        if (!ReadConfigFile(inv.files.first(), session->net(), &why)) {
            console.err(problemText(console, inv.files.first(), why));
            exit = Different;
            return nullptr;
        }
    }
    session->apply(inv.link);
    if (!session->open()) {
        console.err(console("CliLinkFailure", *session->linkFailure()));
        exit = LinkFailed;
        return nullptr;
    }
    return session;
}

// Runs a command on the network opened; a link failure, whenever it came, is said
// last and ends with its own exit code.
int onNetwork(const Invocation &inv, Console &console,
              const std::function<int(NetSession &, SatelliteProbe &)> &command) {
    int exit = Success;
    const std::unique_ptr<NetSession> session = openSession(inv, console, exit);
    if (!session)
        return exit;
    SatelliteProbe probe(*session);
    exit = command(*session, probe);
    if (!session->linkFailure())
        return exit;
    console.err(console("CliLinkFailure", *session->linkFailure()));
    return LinkFailed;
}

// A row of a result table, and its differences on the lines below it.
void appendRow(QList<QStringList> &table, const QStringList &cells,
               const CommissioningReport::Row &row) {
    table.append(cells);
    for (const QString &difference : row.differences)
        table.append({QStringLiteral("  ") + difference});
}

QString rxTx(const CommissioningReport::Row &row) {
    return row.rxFree.isEmpty() ? QString() : row.rxFree + u'/' + row.txFree;
}

QString networkName(NetSession &session, const Console &console) {
    if (session.link() == NetworkChoice::Link::Serial)
        return console("NetworkSerial", SerialRadioNet::deviceFor(session.net().CommPort()));
    return console("NetworkSimulated");
}

Progress progressOn(Console &console) {
    return [&console](int step, int steps, qint16 satId) {
        console.progress(console("CliProgress", step, steps, satId));
    };
}

QString enabledWord(const Console &console, qint32 enabled) {
    return console(enabled != 0 ? "CliEnabledWord" : "CliDisabledWord");
}

QString stateText(const Console &console, CommissioningReport::Row::State state) {
    using State = CommissioningReport::Row::State;
    switch (state) {
    case State::Matches:
        return console("CliStateMatches");
    case State::Differs:
        return console("CliStateDiffers");
    case State::Missing:
        return console("CliStateMissing");
    case State::Unexpected:
        return console("CliStateUnexpected");
    case State::Duplicate:
        break;
    }
    return console("CliStateDuplicate");
}

// Heading, rows with their differences beneath, notes, the report file.
int finish(const Invocation &inv, Console &console, NetSession &session,
           CommissioningReport &report, const QList<QStringList> &table) {
    console.endProgress();
    console.table(table);
    for (const QString &note : report.notes)
        console.out(note);
    using State = CommissioningReport::Row::State;
    const auto count = [&](State state) {
        return std::count_if(report.rows.begin(), report.rows.end(),
                             [state](const auto &row) { return row.state == state; });
    };
    console.out(console("CliSummary", count(State::Matches), count(State::Differs),
                        count(State::Missing), count(State::Unexpected), count(State::Duplicate)));
    // Said on standard error below, and noted in the report.
    if (session.linkFailure())
        report.notes << console("CliLinkFailure", *session.linkFailure());
    if (!inv.report.isEmpty()) {
        report.when = QDateTime::currentDateTime();
        report.file = inv.files.value(0);
        report.network = networkName(session, console);
        report.port = session.net().CommPort();
        report.baudRate = session.net().BaudRate();
        QString error;
        if (!writeReport(report, inv.report, inv.language, error, inv.pdf)) {
            console.err(console("CliReportFailed", inv.report, error));
            return Different;
        }
        console.out(console("CliReportWritten", inv.report));
    }
    return report.clean() ? Success : Different;
}

} // namespace

int runDetect(const Invocation &inv, Console &console) {
    return onNetwork(inv, console, [&](NetSession &session, SatelliteProbe &probe) -> int {
        const qint16 satId = inv.satId.value_or(Air::AnySatellite);
        const auto answer = probe.detect(satId);
        if (session.linkFailure())
            return LinkFailed;
        if (!answer) {
            console.out(satId == Air::AnySatellite ? console("CliNoneAnswered")
                                                   : console("CliNoAnswer", satId));
            return Different;
        }
        console.out(console("CliAnswers", answer->satId, answer->identity));
        return Success;
    });
}

int runRead(const Invocation &inv, Console &console) {
    return onNetwork(inv, console, [&](NetSession &session, SatelliteProbe &probe) -> int {
        const qint16 satId = *inv.satId;
        const auto config = probe.readConfig(satId);
        const auto status = config ? probe.readStatus(satId) : std::nullopt;
        if (session.linkFailure())
            return LinkFailed;
        if (!config) {
            console.out(console("CliNoAnswer", satId));
            return Different;
        }
        QList<QStringList> rows{
            {console("CliSatId"), QString::number(satId)},
            {console("CliInterface"), interfaceName(config->interfaceCode)},
            {console("CliEnabled"), console(config->enabled != 0 ? "CliYes" : "CliNo")},
            {console("CliFirmware"),
             QStringLiteral("%1.%2").arg(config->rfVersionMajor).arg(config->rfVersionMinor)}};
        if (status) {
            rows.append({console("CliRxFree"), console("CliKb", status->rxFree)});
            rows.append({console("CliTxFree"), console("CliKb", status->txFree)});
        }
        console.table(rows);
        if (!status) {
            console.out(console("CliNoStatus", satId));
            return Different;
        }
        return Success;
    });
}

int runSurvey(const Invocation &inv, Console &console) {
    return onNetwork(inv, console, [&](NetSession &session, SatelliteProbe &probe) -> int {
        CommissioningReport report;
        Survey(session, probe, console.words())
            .run(fileSatellites(session.net()), report, progressOn(console));

        QList<QStringList> table{{console("CliPosition"), console("CliSatId"), console("CliState"),
                                  console("CliInterface"), console("CliEnabled"),
                                  console("CliFirmware"), console("CliRxTx"),
                                  console("CliIdentity")}};
        for (const CommissioningReport::Row &row : report.rows) {
            const QString interface =
                row.foundInterface.isEmpty() ? row.expectedInterface : row.foundInterface;
            const QString enabled =
                row.foundEnabled.isEmpty() ? row.expectedEnabled : row.foundEnabled;
            appendRow(
                table,
                {row.position > 0 ? QString::number(row.position) : QStringLiteral("-"),
                 QString::number(row.satId), stateText(console, row.state), interface,
                 enabled.isEmpty() ? QString() : console(enabled == u"1" ? "CliYes" : "CliNo"),
                 row.firmware, rxTx(row), row.identity},
                row);
        }
        return finish(inv, console, session, report, table);
    });
}

int runTest(const Invocation &inv, Console &console) {
    return onNetwork(inv, console, [&](NetSession &session, SatelliteProbe &probe) -> int {
        CommissioningReport report;
        const std::vector<int> answered =
            LiveTest(session, probe, console.words())
                .run(fileSatellites(session.net()), inv.rounds, report, progressOn(console));

        QList<QStringList> table{{console("CliSatId"), console("CliState"), console("CliRounds"),
                                  console("CliMedian"), console("CliWorst"), console("CliFirmware"),
                                  console("CliRxTx")}};
        const auto ms = [&](qint64 ns) {
            return ns < 0 ? QString() : console("CliMs", (ns + 500'000) / 1'000'000);
        };
        for (std::size_t i = 0; i < report.rows.size(); ++i) {
            const CommissioningReport::Row &row = report.rows[i];
            NetworkLog::Health health;
            for (const NetworkLog::Health &h : report.health) {
                if (h.satId == row.satId)
                    health = h;
            }
            appendRow(table,
                      {QString::number(row.satId), stateText(console, row.state),
                       QStringLiteral("%1/%2").arg(answered[i]).arg(report.rounds),
                       ms(health.medianLatencyNs), ms(health.worstLatencyNs), row.firmware,
                       rxTx(row)},
                      row);
        }
        console.endProgress();
        console.out(console("CliRoundsRun", report.rounds, inv.rounds));
        return finish(inv, console, session, report, table);
    });
}

int runConfigure(const Invocation &inv, Console &console) {
    return onNetwork(inv, console, [&](NetSession &session, SatelliteProbe &probe) -> int {
        const qint16 satId = *inv.satId, newSatId = *inv.newSatId;
        const Reconfiguration::Result result =
            Reconfiguration(session, probe).run(satId, newSatId, inv.interfaceCode, inv.enabled);
        using Outcome = Reconfiguration::Outcome;
        const auto settings = [&](const SatelliteProbe::Config &c) {
            return interfaceName(c.interfaceCode) + QStringLiteral(", ") +
                   enabledWord(console, c.enabled);
        };
        switch (result.outcome) {
        case Outcome::LinkFailed:
            return LinkFailed;
        case Outcome::Confirmed:
            console.out(console("CliConfigured", satId, newSatId, settings(result.sent)));
            return Success;
        case Outcome::NoAnswer:
            console.out(console("CliConfigureNoAnswer", satId));
            break;
        case Outcome::NewIdTaken:
            console.out(console("CliConfigureTaken", newSatId));
            break;
        case Outcome::Silent:
            console.out(console("CliConfigureSilent", newSatId, satId));
            break;
        case Outcome::Differs:
            console.out(console("CliConfigureDiffers", newSatId, settings(result.readBack),
                                settings(result.sent)));
            break;
        }
        if (!result.error.isEmpty())
            console.out(QStringLiteral("  ") + result.error);
        return Different;
    });
}
