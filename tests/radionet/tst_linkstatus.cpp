#include "config/Globale.h"
#include "platform/HandlerGuard.h"
#include "platform/LanguageTable.h"
#include "platform/RuntimeError.h"
#include "radionet/LinkStatus.h"
#include "radionet/Pause.h"
#include "support/NetSupport.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QLabel>

using namespace net_support;

namespace {

// The link routines on their own: the simulated network, the pause on its own
// Timer1, and the two status panels.
struct Rig {
    explicit Rig(bool french = false) {
        g.LanguageBase = french ? 0 : 100;
        timer1.setInterval(50);
        QObject::connect(&timer1, &QTimer::timeout, guard(&pause, &Pause::Timer1_Timer));
        // What the window's error handler does that these routines read.
        QObject::connect(&net, &RadioNetControl::NetError,
                         [this](qint16 number, const QString &) { g.NetErrorCode = number; });
        net.setAnswerDelayMs(0);
        net.clearAir();
        panel2.setText(QStringLiteral("kept"));
    }

    // Brings the link to a state the way the routines would, then forgets the calls.
    void bringTo(int state) {
        if (state >= 1 && state <= 3)
            net.OpenPort();
        if (state == 2 || state == 3)
            net.StartPolling();
        if (state == 3)
            net.StopPolling();
        if (state > 3)
            net.setLinkStateOverride(qint16(state));
        net.clearCallLog();
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

} // namespace

class tst_LinkStatus : public QObject {
    Q_OBJECT

private slots:
    void queryLinkStatus_data() {
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("port");
        QTest::addColumn<bool>("french");
        QTest::addColumn<bool>("errorPending");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("lastLinkState");

        QTest::newRow("inactive") << 0 << "COM1" << false << false << "Com port inactive" << 0;
        QTest::newRow("inactive, French") << 0 << "COM1" << true << false << "Inactif" << 0;
        QTest::newRow("open") << 1 << "COM3" << false << false << "COM3 Open " << 1;
        QTest::newRow("open, French") << 1 << "COM3" << true << false << "COM3 Ouvert " << 1;
        QTest::newRow("polling") << 2 << "COM2" << false << false << "COM2 Open Polling active"
                                 << 2;
        QTest::newRow("polling, French")
            << 2 << "COM2" << true << false << "COM2 Ouvert Polling Actif" << 2;
        QTest::newRow("halted") << 3 << "COM4" << false << false << "COM4 Open Polling halted" << 3;
        QTest::newRow("halted, French")
            << 3 << "COM4" << true << false << "COM4 Ouvert Polling Inactif" << 3;
        QTest::newRow("polling, error pending")
            << 2 << "COM1" << false << true << "COM1 Open Polling active" << 2;
        // Out of range: one fixed text in both languages, and the last state kept.
        QTest::newRow("state 7") << 7 << "COM1" << false << false << "Erreur de Status" << 1;
        QTest::newRow("state 7, French") << 7 << "COM1" << true << false << "Erreur de Status" << 1;
        QTest::newRow("state 4") << 4 << "COM1" << false << true << "Erreur de Status" << 1;
        QTest::newRow("state -1") << -1 << "COM1" << false << false << "Erreur de Status" << 1;
    }
    void queryLinkStatus() {
        QFETCH(int, state);
        QFETCH(QString, port);
        QFETCH(bool, french);
        QFETCH(bool, errorPending);
        QFETCH(QString, text);
        QFETCH(int, lastLinkState);

        Rig rig(french);
        rig.net.setCommPort(port);
        rig.net.setLinkStateOverride(1);
        rig.link.QueryLinkStatus();
        QCOMPARE(rig.g.LastLinkState, qint16(1));

        rig.panel2.setText(QStringLiteral("kept"));
        rig.g.NetErrorCode = errorPending ? 4 : 0;
        rig.net.setLinkStateOverride(qint16(state));
        QCOMPARE(rig.link.QueryLinkStatus(), text);
        QCOMPARE(rig.panel1.text(), text);
        QCOMPARE(rig.g.LastLinkState, qint16(lastLinkState));
        const QString ready = french ? QString::fromUtf8("Prêt") : QStringLiteral("Ready");
        QCOMPARE(rig.panel2.text(), errorPending ? QStringLiteral("kept") : ready);
    }

    // The four moves of the link: the calls made, the result, the state reached, and
    // the flags they record (-1: not written).
    void routines_data() {
        QTest::addColumn<QString>("routine");
        QTest::addColumn<int>("from");
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<QStringList>("log");
        QTest::addColumn<bool>("result");
        QTest::addColumn<int>("stateAfter");
        QTest::addColumn<int>("portOpen");
        QTest::addColumn<int>("pollingActive");
        QTest::addColumn<int>("netErrorCode");

        const QString start = QStringLiteral("StartNetwork");
        QTest::newRow("start from inactive")
            << start << 0 << "" << QStringList{"OpenPort", "StartPolling"} << true << 2 << 1 << 1
            << 0;
        QTest::newRow("start from open")
            << start << 1 << "" << QStringList{"StartPolling"} << true << 2 << -1 << 1 << 0;
        QTest::newRow("start from halted")
            << start << 3 << "" << QStringList{"StartPolling"} << true << 2 << -1 << 1 << 0;
        QTest::newRow("start while polling")
            << start << 2 << "" << QStringList{} << true << 2 << -1 << -1 << 0;
        QTest::newRow("start without satellites")
            << start << 0 << "no satellites" << QStringList{} << false << 0 << -1 << -1 << 0;
        // The error event of the failed opening arrives during the pause: no polling.
        QTest::newRow("start on a missing port")
            << start << 0 << "port missing" << QStringList{"OpenPort"} << false << 0 << 0 << -1
            << 2;
        QTest::newRow("start, error during the first pause")
            << start << 0 << "error in first pause" << QStringList{"OpenPort"} << false << 1 << 1
            << -1 << 6;
        QTest::newRow("start, error during the first pause, polling reported")
            << start << 0 << "error in first pause, state 2" << QStringList{"OpenPort"} << true << 2
            << 1 << -1 << 6;

        const QString halt = QStringLiteral("HaltPolling");
        QTest::newRow("halt from inactive")
            << halt << 0 << "" << QStringList{} << false << 0 << -1 << -1 << 0;
        QTest::newRow("halt from open")
            << halt << 1 << "" << QStringList{} << false << 1 << -1 << -1 << 0;
        QTest::newRow("halt while polling")
            << halt << 2 << "" << QStringList{"StopPolling"} << true << 3 << -1 << 0 << 0;
        QTest::newRow("halt when halted")
            << halt << 3 << "" << QStringList{} << true << 3 << -1 << -1 << 0;
        QTest::newRow("halt in state 7")
            << halt << 7 << "" << QStringList{} << false << 7 << -1 << -1 << 0;

        // The result says the port was inactive before, not that closing worked.
        const QString close = QStringLiteral("CloseNetwork");
        QTest::newRow("close when inactive")
            << close << 0 << "" << QStringList{"ClosePort"} << true << 0 << 0 << -1 << 0;
        QTest::newRow("close when open")
            << close << 1 << "" << QStringList{"ClosePort"} << false << 0 << 0 << -1 << 0;
        QTest::newRow("close while polling")
            << close << 2 << "" << QStringList{"StopPolling", "ClosePort"} << false << 0 << 0 << 0
            << 0;
        QTest::newRow("close when halted")
            << close << 3 << "" << QStringList{"ClosePort"} << false << 0 << 0 << -1 << 0;
        QTest::newRow("close in state 7")
            << close << 7 << "" << QStringList{} << false << 7 << -1 << -1 << 0;

        const QString reopen = QStringLiteral("ReopenPort");
        QTest::newRow("reopen while polling")
            << reopen << 2 << "" << QStringList{"ClosePort", "OpenPort"} << true << 1 << 1 << -1
            << 0;
        QTest::newRow("reopen when inactive")
            << reopen << 0 << "" << QStringList{"ClosePort", "OpenPort"} << true << 1 << 1 << -1
            << 0;
        QTest::newRow("reopen on a missing port")
            << reopen << 0 << "port missing" << QStringList{"ClosePort", "OpenPort"} << false << 0
            << 0 << -1 << 2;
    }
    void routines() {
        QFETCH(QString, routine);
        QFETCH(int, from);
        QFETCH(QString, scenario);
        QFETCH(QStringList, log);
        QFETCH(bool, result);
        QFETCH(int, stateAfter);
        QFETCH(int, portOpen);
        QFETCH(int, pollingActive);
        QFETCH(int, netErrorCode);

        // Twice, from either value of the flags: a flag the routine does not write
        // keeps the value it had.
        for (const bool flagsBefore : {false, true}) {
            Rig rig;
            if (scenario != QLatin1String("no satellites"))
                rig.net.Satellites().Add(1);
            if (scenario == QLatin1String("port missing"))
                rig.net.setAvailablePorts({QStringLiteral("COM2")});
            rig.bringTo(from);
            TickHook firstPause(&rig.timer1, [&](int tick) {
                if (tick != 1 || !scenario.startsWith(QLatin1String("error in first pause")))
                    return;
                rig.net.raiseNetError(6, QStringLiteral("Noise"));
                if (scenario.endsWith(QLatin1String("state 2")))
                    rig.net.setLinkStateOverride(2);
            });
            rig.g.PortOpen = flagsBefore;
            rig.g.PollingActive = flagsBefore;
            // Every routine starts by clearing the pending error.
            rig.g.NetErrorCode = 9;

            bool returned = false;
            if (routine == QLatin1String("StartNetwork"))
                returned = rig.link.StartNetwork();
            else if (routine == QLatin1String("HaltPolling"))
                returned = rig.link.HaltPolling();
            else if (routine == QLatin1String("CloseNetwork"))
                returned = rig.link.CloseNetwork();
            else
                returned = rig.link.ReopenPort();

            QCOMPARE(rig.net.callLog(), log);
            if (routine != QLatin1String("ReopenPort")) // its result is not settled
                QCOMPARE(returned, result);
            QCOMPARE(rig.net.LinkState(), qint16(stateAfter));
            QCOMPARE(rig.g.PortOpen, portOpen < 0 ? flagsBefore : portOpen == 1);
            QCOMPARE(rig.g.PollingActive, pollingActive < 0 ? flagsBefore : pollingActive == 1);
            QCOMPARE(rig.g.NetErrorCode, qint16(netErrorCode));
            QVERIFY(!rig.timer1.isActive());
            // The last link status query writes "Ready" unless an error is pending.
            QCOMPARE(rig.panel2.text(),
                     netErrorCode == 0 ? QStringLiteral("Ready") : QStringLiteral("kept"));
            QCOMPARE(rig.panel1.text(), rig.link.QueryLinkStatus());
        }
    }

    void pauseLastsFiveTicks() {
        Rig rig;
        TickHook ticks(&rig.timer1, [](int) {});
        rig.pause.run();
        QCOMPARE(ticks.ticks(), 5);
        QCOMPARE(rig.g.WaitTicks, qint16(5));
        QVERIFY(!rig.timer1.isActive());
        QCOMPARE(rig.timer1.interval(), 50);
    }

    // The pause sleeps in the event loop between events. Counted in wake-ups of the
    // event loop, not in time: five ticks need a handful, a loop that polls without
    // waiting makes thousands in the same quarter second.
    void pauseDoesNotSpin() {
        Rig rig;
        QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance();
        QVERIFY(dispatcher);
        int wakeUps = 0;
        const QMetaObject::Connection awake =
            connect(dispatcher, &QAbstractEventDispatcher::awake, [&] { ++wakeUps; });
        const QMetaObject::Connection asleep =
            connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, [&] { ++wakeUps; });
        rig.pause.run();
        disconnect(awake);
        disconnect(asleep);
        QVERIFY2(wakeUps < 100, qPrintable(QStringLiteral("%1 wake-ups").arg(wakeUps)));
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
        std::function<void()> nested;
        QObject context;
        QTimer zeroTimer; // a timer event, not a posted one
        zeroTimer.setSingleShot(true);
        zeroTimer.setInterval(0);
        connect(&zeroTimer, &QTimer::timeout, [&] { nested(); });
        TickHook ticks(&rig.timer1, [&](int tick) {
            if (tick != 2)
                return;
            if (via == QLatin1String("tick"))
                nested();
            else if (via == QLatin1String("timer"))
                zeroTimer.start();
            else
                QMetaObject::invokeMethod(&context, nested, Qt::QueuedConnection);
        });
        int nestedFromTick = -1;
        int nestedToTick = -1;
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
