#include "config/Globale.h"
#include "platform/HandlerGuard.h"
#include "platform/LanguageTable.h"
#include "platform/RuntimeError.h"
#include "radionet/gui/LinkStatus.h"
#include "radionet/gui/Pause.h"
#include "support/NetSupport.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QLabel>

using namespace net_support;
using namespace Qt::StringLiterals;

namespace {

// The link routines on their own: the simulated network, the pause on its own
// Timer1, and the two status panels.
struct Rig {
    Rig() {
        g.LanguageBase = 100;
        timer1.setInterval(50);
        QObject::connect(&timer1, &QTimer::timeout, guard(&pause, &Pause::Timer1_Timer));
        // What the window's error handler does that these routines read.
        QObject::connect(&net, &RadioNetControl::NetError,
                         [this](qint16 number, const QString &) { g.NetErrorCode = number; });
        net.setAnswerDelayMs(0);
        net.clearAir();
        net.setCommPort(QStringLiteral("COM3"));
        panel2.setText(QStringLiteral("kept"));
    }

    Globale g;
    LanguageTable table;
    Texts texts{table, g};
    HandlerGuard guard{{}};
    QLabel panel1;
    QLabel panel2;
    QTimer timer1;
    Pause pause{g, timer1};
    SimulatedRadioNet net;
    LinkStatus link{{&panel1, &panel2}, g, texts, net, pause};
};

// The four moves of the link: the calls made, the result, the state reached, and
// the flags they record (-1: not written).
struct Move {
    const char *tag, *routine;
    int from;
    QLatin1String scenario;
    const char *log;
    bool result;
    int stateAfter, portOpen, pollingActive, netErrorCode;
};
const char *const Start = "StartNetwork", *const Halt = "HaltPolling",
                  *const Close = "CloseNetwork", *const Reopen = "ReopenPort";
const Move Moves[] = {
    {"start from inactive", Start, 0, {}, "OpenPort StartPolling", 1, 2, 1, 1, 0},
    {"start from halted", Start, 3, {}, "StartPolling", 1, 2, -1, 1, 0},
    {"start while polling", Start, 2, {}, "", 1, 2, -1, -1, 0},
    {"start without satellites", Start, 0, "no satellites"_L1, "", 0, 0, -1, -1, 0},
    // The error event of the failed opening arrives during the pause: no polling.
    {"start on a missing port", Start, 0, "port missing"_L1, "OpenPort", 0, 0, 0, -1, 2},
    {"start, error in the first pause", Start, 0, "error"_L1, "OpenPort", 0, 1, 1, -1, 6},
    // The result is what the link reports, whatever the flags say.
    {"start, error in the first pause, state 2", Start, 0, "error, state 2"_L1, "OpenPort", 1, 2, 1,
     -1, 6},
    {"halt from open", Halt, 1, {}, "", 0, 1, -1, -1, 0},
    {"halt while polling", Halt, 2, {}, "StopPolling", 1, 3, -1, 0, 0},
    {"halt when halted", Halt, 3, {}, "", 1, 3, -1, -1, 0},
    // The result says the port was inactive before, not that closing worked.
    {"close when inactive", Close, 0, {}, "ClosePort", 1, 0, 0, -1, 0},
    {"close when halted", Close, 3, {}, "ClosePort", 0, 0, 0, -1, 0},
    {"close while polling", Close, 2, {}, "StopPolling ClosePort", 0, 0, 0, 0, 0},
    {"close in state 7", Close, 7, {}, "", 0, 7, -1, -1, 0},
    {"reopen while polling", Reopen, 2, {}, "ClosePort OpenPort", 1, 1, 1, -1, 0},
    {"reopen on a missing port", Reopen, 0, "port missing"_L1, "ClosePort OpenPort", 0, 0, 0, -1,
     2},
};

} // namespace

class tst_LinkStatus : public QObject {
    Q_OBJECT

private slots:
    void routines_data() {
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(std::size(Moves)); ++i)
            QTest::newRow(Moves[i].tag) << i;
    }
    void routines() {
        QFETCH(int, index);
        const auto &[tag, routine, from, scenario, log, result, stateAfter, portOpen, pollingActive,
                     netErrorCode] = Moves[index];
        const QStringList panel1{"Com port inactive", "COM3 Open ", "COM3 Open Polling active",
                                 "COM3 Open Polling halted"};

        // Twice, from either value of the flags: a flag the routine does not write
        // keeps the value it had.
        for (const bool flagsBefore : {false, true}) {
            Rig rig;
            if (scenario != "no satellites"_L1)
                rig.net.Satellites().Add(1);
            if (scenario == "port missing"_L1)
                rig.net.setAvailablePorts({QStringLiteral("COM1")});
            if (from >= 1 && from <= 3)
                rig.net.OpenPort();
            if (from == 2 || from == 3)
                rig.net.StartPolling();
            if (from == 3)
                rig.net.StopPolling();
            if (from > 3)
                rig.net.setLinkStateOverride(qint16(from));
            rig.net.clearCallLog();
            TickHook firstPause(&rig.timer1, [&](int tick) {
                if (tick != 1 || !scenario.startsWith("error"_L1))
                    return;
                rig.net.raiseNetError(6, QStringLiteral("Noise"));
                if (scenario.endsWith("state 2"_L1))
                    rig.net.setLinkStateOverride(2);
            });
            rig.g.PortOpen = flagsBefore;
            rig.g.PollingActive = flagsBefore;
            rig.g.NetErrorCode = 9; // every routine starts by clearing the pending error

            const bool returned = routine == Start   ? rig.link.StartNetwork()
                                  : routine == Halt  ? rig.link.HaltPolling()
                                  : routine == Close ? rig.link.CloseNetwork()
                                                     : rig.link.ReopenPort();
            QCOMPARE(rig.net.callLog(), QString::fromLatin1(log).split(u' ', Qt::SkipEmptyParts));
            if (routine != Reopen) // its result is not settled
                QCOMPARE(returned, result);
            QCOMPARE(rig.net.LinkState(), qint16(stateAfter));
            QCOMPARE(rig.g.PortOpen, portOpen < 0 ? flagsBefore : portOpen == 1);
            QCOMPARE(rig.g.PollingActive, pollingActive < 0 ? flagsBefore : pollingActive == 1);
            QCOMPARE(rig.g.NetErrorCode, qint16(netErrorCode));
            QVERIFY(!rig.timer1.isActive());
            // The last link status query writes "Ready" unless an error is pending.
            QCOMPARE(rig.panel2.text(),
                     netErrorCode == 0 ? QStringLiteral("Ready") : QStringLiteral("kept"));
            // A state out of range: one fixed text in both languages.
            QCOMPARE(rig.panel1.text(),
                     panel1.value(stateAfter, QStringLiteral("Erreur de Status")));
        }
    }

    // The pause lasts five ticks and sleeps in the event loop between events. Counted
    // in wake-ups of the event loop, not in time: five ticks need a handful, a loop
    // that polls without waiting makes thousands in the same quarter second.
    void pauseDoesNotSpin() {
        Rig rig;
        TickHook ticks(&rig.timer1, [](int) {});
        QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance();
        int wakeUps = 0;
        QObject context;
        connect(dispatcher, &QAbstractEventDispatcher::awake, &context, [&] { ++wakeUps; });
        connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &context, [&] { ++wakeUps; });
        rig.pause.run();
        QVERIFY2(wakeUps < 100, qPrintable(QStringLiteral("%1 wake-ups").arg(wakeUps)));
        QCOMPARE(ticks.ticks(), 5);
        QCOMPARE(rig.g.WaitTicks, qint16(5));
        QVERIFY(!rig.timer1.isActive());
    }

    // A handler run during a pause may start a pause of its own. When that one ends,
    // the shared count stands at five and Timer1 is stopped: the outer pause ends
    // with it, without a tick of its own, however the handler was reached.
    void nestedPause_data() {
        QTest::addColumn<QString>("via");
        QTest::newRow("from inside a tick") << "tick";
        QTest::newRow("from a timer") << "timer";
        QTest::newRow("from a posted event") << "posted";
    }
    void nestedPause() {
        QFETCH(QString, via);
        Rig rig;
        int nestedFromTick = -1;
        int nestedToTick = -1;
        std::function<void()> nested;
        QTimer zeroTimer; // a timer event, not a posted one
        zeroTimer.setSingleShot(true);
        connect(&zeroTimer, &QTimer::timeout, [&] { nested(); });
        TickHook ticks(&rig.timer1, [&](int tick) {
            if (tick != 2)
                return;
            if (via == QLatin1String("tick"))
                nested();
            else if (via == QLatin1String("timer"))
                zeroTimer.start(0);
            else
                QMetaObject::invokeMethod(&rig.timer1, nested, Qt::QueuedConnection);
        });
        nested = [&] {
            nestedFromTick = ticks.ticks();
            rig.pause.run();
            nestedToTick = ticks.ticks();
        };
        Watchdog watchdog("a pause around a nested pause");
        rig.pause.run();
        QVERIFY(nestedFromTick >= 2);
        QCOMPARE(nestedToTick - nestedFromTick, 5);
        QCOMPARE(ticks.ticks(), nestedToTick);
        QCOMPARE(rig.g.WaitTicks, qint16(5));
        QVERIFY(!rig.timer1.isActive());
    }

    void tickOverflow() {
        Rig rig;
        rig.g.WaitTicks = 32766;
        rig.pause.Timer1_Timer();
        QCOMPARE(rig.g.WaitTicks, qint16(32767));
        QVERIFY_THROWS_EXCEPTION(RuntimeError, rig.pause.Timer1_Timer());
        QCOMPARE(rig.g.WaitTicks, qint16(32767));
    }
};

int main(int argc, char **argv) {
    // Qt's plain Unix event loop rather than the GLib one: in it a pause nested in a
    // posted event leaves the pause under it asleep unless it wakes it itself.
    qputenv("QT_NO_GLIB", "1");
    QApplication app(argc, argv);
    app.setAttribute(Qt::AA_Use96Dpi, true);
    tst_LinkStatus test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_linkstatus.moc"
