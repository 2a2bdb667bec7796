#include "config/Globale.h"
#include "platform/HandlerGuard.h"
#include "platform/LanguageTable.h"
#include "radionet/gui/LinkStatus.h"
#include "radionet/gui/Pause.h"
#include "support/MainHarness.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QPushButton>
#include <QTableWidget>

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

// The four moves of the link: the calls made, the result, the state reached and the
// error left pending.
struct Move {
    const char *tag, *routine;
    int from;
    QLatin1String scenario;
    const char *log;
    bool result;
    int stateAfter, netErrorCode;
};
const char *const Start = "StartNetwork", *const Halt = "HaltPolling",
                  *const Close = "CloseNetwork", *const Reopen = "ReopenPort";
const Move Moves[] = {
    {"start from inactive", Start, 0, {}, "OpenPort StartPolling", 1, 2, 0},
    {"start from halted", Start, 3, {}, "StartPolling", 1, 2, 0},
    {"start while polling", Start, 2, {}, "", 1, 2, 0},
    {"start without satellites", Start, 0, "no satellites"_L1, "", 0, 0, 0},
    // The error event of the failed opening arrives during the pause: no polling.
    {"start on a missing port", Start, 0, "port missing"_L1, "OpenPort", 0, 0, 2},
    {"start, error in the first pause", Start, 0, "error"_L1, "OpenPort", 0, 1, 6},
    // The result is what the link reports.
    {"start, error in the first pause, state 2", Start, 0, "error, state 2"_L1, "OpenPort", 1, 2,
     6},
    {"halt from open", Halt, 1, {}, "", 0, 1, 0},
    {"halt while polling", Halt, 2, {}, "StopPolling", 1, 3, 0},
    {"halt when halted", Halt, 3, {}, "", 1, 3, 0},
    // The result says the port was inactive before, not that closing worked.
    {"close when inactive", Close, 0, {}, "ClosePort", 1, 0, 0},
    {"close when halted", Close, 3, {}, "ClosePort", 0, 0, 0},
    {"close while polling", Close, 2, {}, "StopPolling ClosePort", 0, 0, 0},
    {"close in state 7", Close, 7, {}, "", 0, 7, 0},
    {"reopen while polling", Reopen, 2, {}, "ClosePort OpenPort", 1, 1, 0},
    {"reopen on a missing port", Reopen, 0, "port missing"_L1, "ClosePort OpenPort", 0, 0, 2},
};

} // namespace

class tst_RadioNet : public QObject {
    Q_OBJECT

private slots:
    void routines_data() {
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(std::size(Moves)); ++i)
            QTest::newRow(Moves[i].tag) << i;
    }

    void routines() {
        QFETCH(int, index);
        const auto &[tag, routine, from, scenario, log, result, stateAfter, netErrorCode] =
            Moves[index];
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
        rig.g.NetErrorCode = 9; // every routine starts by clearing the pending error
        const bool returned = routine == Start   ? rig.link.StartNetwork()
                              : routine == Halt  ? rig.link.HaltPolling()
                              : routine == Close ? rig.link.CloseNetwork()
                                                 : rig.link.ReopenPort();
        QCOMPARE(rig.net.callLog(), QString::fromLatin1(log).split(u' ', Qt::SkipEmptyParts));
        if (routine != Reopen) // its result is not settled
            QCOMPARE(returned, result);
        QCOMPARE(rig.net.LinkState(), qint16(stateAfter));
        QCOMPARE(rig.g.NetErrorCode, qint16(netErrorCode));
        QVERIFY(!rig.timer1.isActive());
        // The last link status query writes "Ready" unless an error is pending; a state
        // out of range shows one fixed text in both languages.
        QCOMPARE(rig.panel2.text(), netErrorCode == 0 ? "Ready" : "kept");
        QCOMPARE(rig.panel1.text(),
                 QStringList({"Com port inactive", "COM3 Open ", "COM3 Open Polling active",
                              "COM3 Open Polling halted"})
                     .value(stateAfter, "Erreur de Status"));
    }

    // The pause lasts five ticks and sleeps in the event loop between events. Counted
    // in wake-ups of the event loop, not in time: five ticks need a handful, a loop
    // that polls without waiting makes thousands in the same quarter second.
    void pause() {
        Rig rig;
        TickHook ticks(&rig.timer1, [](int) {});
        int wakeUps = 0;
        QObject context;
        for (auto signal :
             {&QAbstractEventDispatcher::awake, &QAbstractEventDispatcher::aboutToBlock})
            connect(QAbstractEventDispatcher::instance(), signal, &context, [&] { ++wakeUps; });
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
        rig.pause.run();
        QVERIFY(nestedFromTick >= 2);
        QCOMPARE(nestedToTick - nestedFromTick, 5);
        QCOMPARE(ticks.ticks(), nestedToTick);
        QCOMPARE(rig.g.WaitTicks, qint16(5));
        QVERIFY(!rig.timer1.isActive());
    }

    // The satellite tab open, satellites 5 (interface 2, enabled 70000, version 1.10)
    // and 12 on the air, then the steps (see MainHarness::act; "MFG1=old" marks the
    // network view so that a rewritten value shows). Text3, the control's satellites,
    // the network view, the calls made, both panels and whether Configure is offered.
    void readBackChain_data() {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("state");
        const auto row = [](const char *name, const char *steps, const char *state) {
            QTest::newRow(name) << QString::fromLatin1(steps) << QString::fromUtf8(state);
        };
        // A detection answer from a satellite of ours shows its Sat ID and asks for the
        // configuration, whose answer asks for the status. Sat ID 3 is not on the air.
        row("QX", "Text3=3 Text3 MFG1=old ~answered:3:QX ~config:3",
            "3 | 3/1/1 | 3,RS-232,1,0.0,, | RequestConfig 3,RequestStatus 3 | Ready | COM1 Open  "
            "| false");
        // Any other identity blanks the Sat ID; the current satellite is asked all the same.
        row("lower case qx", "Text3=3 Text3 MFG1=old ~answered:3:qx_norvale",
            "3 | 3/1/1 | ,,,,, | RequestConfig 3 | Ready | COM1 Open  | false");
        row("another Sat ID", "Text3=3 Text3 MFG1=old ~answered:4:QX",
            "3 | 3/1/1 | old,old,old,old,old,old | RequestConfig 3 | Ready | COM1 Open  | false");
        // An emptied field becomes 2047, which stands for any satellite: the detection
        // and configuration answers name it, the status answer does not.
        row("any satellite, QX", "Text3= Text3 MFG1=old ~answered:9:QX",
            "9 | 9/1/1 | 9,,,,, | RequestConfig 9 | Ready | COM1 Open  | false");
        row("any satellite, foreign", "Text3= Text3 MFG1=old ~answered:9:AB",
            "2047 | 2047/1/1 | ,,,,, | RequestConfig 2047 | Ready | COM1 Open  | false");
        row("any satellite, status first", "Text3= Text3 MFG1=old b_GetConfig ~status:12",
            "2047 | 2047/1/1 | old,old,old,old,old,old | RequestConfig 2047 | Ready | COM1 Open  "
            "| false");
        row("any satellite, configuration", "Text3= Text3 b_GetConfig ~status:12 ~config:12",
            "12 | 12/1/1 | 12,RS-232,1,0.0,40 Ko,41 Ko | RequestConfig 2047,RequestStatus 12 | "
            "Ready | COM1 Open  | true");
        // Detection under 2047 is answered by the first satellite on the air.
        row("any satellite, detected", "Text3= Text3 b_Alive",
            "5 | 5/2/70000 | 5,RS-485,70000,1.10,28 Ko,30 Ko | Detect 2047,RequestConfig "
            "5,RequestStatus 5 | Ready | COM1 Open  | true");
        // Answers of a satellite not shown are ignored; a duplicated status answer ends
        // the chain again, asking nothing more.
        row("others ignored",
            "Text3= Text3 b_GetConfig ~config:12 ~log ~config:9 ~status:9 ~status:12 ~status:12",
            "12 | 12/1/1 | 12,RS-232,1,0.0,40 Ko,41 Ko |  | Ready | COM1 Open  | true");
        // Interface 2 shows as RS-485, the enabled value is 32 bits wide.
        row("detection", "Text3=5 Text3 b_Alive",
            "5 | 5/2/70000 | 5,RS-485,70000,1.10,28 Ko,30 Ko | Detect 5,RequestConfig "
            "5,RequestStatus 5 | Ready | COM1 Open  | true");
        // An error empties the view and is told until the chain completes again; the
        // read-back mode stays.
        row("error", "Text3=5 Text3 b_Alive ~state:3 ~error:3:Timeout",
            "5 | 5/2/70000 | ,,,,, | Detect 5,RequestConfig 5,RequestStatus 5 | Timeout Error n.3 "
            "| "
            "COM1 Open Polling halted | true");
        row("error, French", "m_French Text3=5 Text3 b_Alive ~state:3 ~error:9:",
            "5 | 5/2/70000 | ,,,,, | Detect 5,RequestConfig 5,RequestStatus 5 |  Error n.9 | COM1 "
            "Ouvert Polling Inactif | true");
        row("error 0, French", "m_French Text3=5 Text3 b_Alive ~error:0:Odd",
            "5 | 5/2/70000 | ,,,,, | Detect 5,RequestConfig 5,RequestStatus 5 | Prêt | COM1 Ouvert "
            " "
            "| true");
        row("error, then a configuration", "Text3=5 Text3 b_Alive ~error:3:Timeout ~log ~config:5",
            "5 | 5/2/70000 | 5,RS-485,70000,1.10,28 Ko,30 Ko | RequestStatus 5 | Ready | COM1 Open "
            " "
            "| true");
    }

    void readBackChain() {
        QFETCH(QString, steps);
        MainHarness h({}, onAir({{.satId = 5,
                                  .interfaceCode = 2,
                                  .enabled = 70000,
                                  .rfVersionMajor = 1,
                                  .rfVersionMinor = 10},
                                 {.satId = 12, .rxFree = 40, .txFree = 41}}));
        h.act("Onglet1=1 ~log " + steps);
        QTEST(
            h.state({"Text3", "sats", "MFG1", "log", "StatusPanel2", "StatusPanel1", "b_Config?"}),
            "state");
    }

    void testTabFillsTheGrid() {
        MainHarness h({}, onAir({}));
        const QString old = "old,old,old";
        h.act("Text3=3 Text3 ~add:7 ~add:3 MFG2=old ~log Onglet1=2");
        QCOMPARE(h.state({"MFG2:1", "MFG2:3", "MFG2:4", "log", "Timer2#"}),
                 "3,  Nothing, | 3,  Nothing, | " + old + " | OpenPort,StartPolling | false");
        QVERIFY(h.w<QTableWidget>("MFG2")->updatesEnabled());

        // In the live test the rows are found by Sat ID, the last of repeated ones winning.
        TickHook ticks(h.w<QTimer>("Timer2"), [&](int) { h.click("b_Fin_Test"); });
        h.click("b_Debut_test");
        QTRY_COMPARE_WITH_TIMEOUT(ticks.ticks(), 1, 10000);
        h.act("~log ~status:3 ~status:7 ~config:3 ~config:8 ~status:8");
        QCOMPARE(h.state({"MFG2:1", "MFG2:2", "MFG2:3", "log"}),
                 "3,  Attempt, | 7,     OK,Version RF:0.0 Mem Free:0 Ko | 3,     OK,Version RF:0.0 "
                 "Mem Free:0 Ko | RequestStatus 3,RequestStatus 7,RequestStatus 3");

        // No satellites: redrawing stays off and nothing is opened; the count message, as
        // stored, is replaced at once by the "Ready" of the closing link status query. A
        // tick on an empty list does nothing. The store refuses the empty Text3, so it
        // never reaches the empty list.
        h.net().Satellites().Clear();
        h.act("Text3= Onglet1=0 MFG2=old ~log Onglet1=2");
        QVERIFY(!h.w<QTableWidget>("MFG2")->updatesEnabled());
        QCOMPARE(h.state({"MFG2:1", "log", "StatusPanel1", "said"}),
                 old + " |  | Com port inactive | Invalid Sat ID,Ready,Nb. of Norvale : 1,Ready");
        h.click("b_Debut_test");
        QTRY_COMPARE_WITH_TIMEOUT(ticks.ticks(), 2, 10000);
        QCOMPARE(h.state({"MFG2:1", "log", "StatusPanel2"}), old + " |  | Ready");

        // Sixteen satellites: the sixteenth has no row, and the error ends the change
        // before the network is started.
        for (int satId = 100; satId < 116; ++satId)
            h.act(QStringLiteral("~add:%1").arg(satId));
        h.act("Onglet1=0 ~log Onglet1=2");
        QCOMPARE(h.state({"MFG2:15", "log", "StatusPanel1", "StatusPanel2"}),
                 "114,  Nothing, |  | Com port inactive | Run-time error 30009: Invalid Row value");
    }

    // Three satellites in turn, one of them silent; the answers keep coming after End
    // Test until a tab change ends the test mode.
    void liveTest() {
        MainHarness h({}, [](SimulatedRadioNet &net) {
            onAir({{.satId = 1, .answers = false},
                   {.satId = 2, .rxFree = 28},
                   {.satId = 3, .rfVersionMajor = 1, .rfVersionMinor = 10, .rxFree = 12}})(net);
            net.setAnswerDelayMs(20);
        });
        h.act("Text3=1 Text3 ~add:2 ~add:3 Onglet1=2 ~log");
        auto *grid = h.w<QTableWidget>("MFG2");
        bool redrawAfterEnd = true;
        TickHook ticks(h.w<QTimer>("Timer2"), [&](int tick) {
            if (tick < 4)
                return;
            h.click("b_Fin_Test");
            redrawAfterEnd = redrawAfterEnd && grid->updatesEnabled();
        });
        const auto configRequests = [&] {
            return h.net().callLog().filter(QStringLiteral("RequestConfig")).join(u',');
        };

        h.click("b_Debut_test");
        QTRY_COMPARE_WITH_TIMEOUT(ticks.ticks(), 4, 10000);
        QVERIFY(!redrawAfterEnd && !h.w<QTimer>("Timer2")->isActive());
        QCOMPARE(configRequests(),
                 "RequestConfig 1,RequestConfig 2,RequestConfig 3,RequestConfig 1");
        QCOMPARE(h.state({"MFG2:1"}), "1,  Attempt,");
        QTRY_COMPARE(
            h.state({"MFG2:2", "MFG2:3"}),
            "2,     OK,Version RF:2.5 Mem Free:28 Ko | 3,     OK,Version RF:1.10 Mem Free:12 Ko");
        // Each answering satellite is asked for its status again and again.
        QTRY_VERIFY(h.net().callLog().filter(QStringLiteral("RequestStatus 2")).size() > 2);
        QVERIFY(h.net().callLog().filter(QStringLiteral("RequestStatus 1")).isEmpty());

        // After End Test the rows still follow the satellites' answers.
        h.net().putOnAir({.satId = 2, .rxFree = 40});
        QTRY_COMPARE(h.state({"MFG2:2"}), "2,     OK,Version RF:2.5 Mem Free:40 Ko");
        QVERIFY(grid->updatesEnabled());

        // Start Test goes on from the satellite the test stopped at, and wraps to the
        // first one when satellites were removed meanwhile.
        h.click("b_Debut_test");
        QTRY_COMPARE_WITH_TIMEOUT(ticks.ticks(), 5, 10000);
        QVERIFY(configRequests().endsWith(QStringLiteral("RequestConfig 2")));
        h.net().Satellites().Remove(2);
        h.net().Satellites().Remove(3);
        h.click("b_Debut_test");
        QTRY_COMPARE_WITH_TIMEOUT(ticks.ticks(), 6, 10000);
        QVERIFY(configRequests().endsWith(QStringLiteral("RequestConfig 1")));

        // While an error is pending a tick marks its row but sends nothing.
        h.act("~error:3:Timeout MFG2=old ~log b_Debut_test");
        QTRY_COMPARE_WITH_TIMEOUT(ticks.ticks(), 7, 10000);
        QCOMPARE(h.state({"MFG2:1", "log"}), "old,  Attempt,old | ");

        // Until a tab change: the answers still on their way are ignored and ask nothing.
        h.act("~log Onglet1=1");
        QCOMPARE(h.state({"log"}), "ClosePort,OpenPort");
    }

    // The simulated network answers never from inside the call, always in the order of
    // the calls; raised events skip the radio delay but still go through the event loop.
    void eventsComeLaterInCallOrder() {
        SimulatedRadioNet net; // the demo air and the default radio delay
        QStringList events;
        connect(&net, &RadioNetControl::NetError, &net,
                [&](qint16 n) { events << QString::number(n); });
        connect(&net, &RadioNetControl::ConfigReceived, &net,
                [&](qint16 id) { events << "c" + QString::number(id); });
        connect(&net, &RadioNetControl::StatusReceived, &net,
                [&](qint16 id) { events << "s" + QString::number(id); });
        net.Satellites().Add(3)->RequestStatus(); // the port is closed: error 1
        net.OpenPort();
        net.Satellites().Add(3)->RequestStatus();
        net.Satellites().Add(2)->RequestConfig();
        net.raiseNetError(9, QStringLiteral("Noise"));
        net.raiseConfigReceived(7);
        QVERIFY(events.isEmpty());
        QTRY_COMPARE(events, QStringList({"9", "c7", "1", "s3", "c2"}));
    }
};

int main(int argc, char **argv) {
    // Qt's plain Unix event loop rather than the GLib one: in it a pause nested in a
    // posted event leaves the pause under it asleep unless it wakes it itself.
    qputenv("QT_NO_GLIB", "1");
    QApplication app(argc, argv);
    app.setAttribute(Qt::AA_Use96Dpi, true);
    tst_RadioNet test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_radionet.moc"
