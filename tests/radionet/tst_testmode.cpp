#include "support/NetSupport.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>

using namespace net_support;

namespace {

// The list holds these Sat IDs, the first one being the one edited.
void setSatellites(MainHarness &h, const QList<qint16> &satIds) {
    h.typeAndLeave("Text3", QString::number(satIds.first()));
    for (qsizetype i = 1; i < satIds.size(); ++i)
        h.net().Satellites().Add(satIds.at(i));
}

QStringList configRequests(MainHarness &h) {
    return h.net().callLog().filter(QStringLiteral("RequestConfig "));
}

} // namespace

class tst_TestMode : public QObject {
    Q_OBJECT

private slots:
    // Each tab change: the fields stored, the pending error cleared, the link moved.
    void tabsDriveTheLink() {
        MainHarness h({}, [](SimulatedRadioNet &net) { net.clearAir(); });
        auto *tabs = h.w<QTabWidget>("Onglet1");
        auto *configure = h.w<QPushButton>("b_Config");
        auto *text3 = h.w<QLineEdit>("Text3");
        const std::tuple<int, QStringList, QString> steps[] = {
            {1, {"ClosePort", "OpenPort"}, "COM1 Open "},
            {2, {"StartPolling"}, "COM1 Open Polling active"},
            {0, {"StopPolling", "ClosePort"}, "Com port inactive"},
            {2, {"OpenPort", "StartPolling"}, "COM1 Open Polling active"},
            {1, {"ClosePort", "OpenPort"}, "COM1 Open "},
            {0, {"ClosePort"}, "Com port inactive"},
        };
        qint16 satId = 10;
        for (const auto &[tab, log, panel1] : steps) {
            const QByteArray where = "to tab " + QByteArray::number(tab);
            h.net().raiseNetError(3, QStringLiteral("Timeout"));
            QTRY_COMPARE(h.panel2(), QStringLiteral("Timeout Error n.3"));
            configure->setEnabled(true);
            text3->setText(QString::number(++satId));
            h.net().clearCallLog();

            tabs->setCurrentIndex(tab);
            QVERIFY2(h.net().callLog() == log, where);
            QVERIFY2(h.panel1() == panel1 && h.panel2() == QStringLiteral("Ready"), where);
            QVERIFY2(h.net().Satellites().Item(1)->SatId() == satId, where);
            // The satellite tab waits for a read-back before Configure is offered.
            QVERIFY2(configure->isEnabled() == (tab != 1), where);
            QVERIFY2(!h.w<QTimer>("Timer2")->isActive() && !h.w<QTimer>("Timer1")->isActive(),
                     where);
        }

        // A Sat ID the fields refuse does not stop the change.
        text3->setText(QStringLiteral("abc"));
        h.net().clearCallLog();
        tabs->setCurrentIndex(1);
        QCOMPARE(h.net().callLog(), (QStringList{"ClosePort", "OpenPort"}));
        QCOMPARE(h.net().Satellites().Item(1)->SatId(), satId);
    }

    void testTabFillsTheGrid() {
        MainHarness h({}, [](SimulatedRadioNet &net) { net.clearAir(); });
        auto *tabs = h.w<QTabWidget>("Onglet1");
        auto *grid = h.w<QTableWidget>("MFG2");
        const QStringList marked(3, QStringLiteral("old"));
        // From the general tab to the test tab, the grid marked and the log emptied.
        const auto enter = [&] {
            tabs->setCurrentIndex(0);
            for (int row = 1; row < grid->rowCount(); ++row)
                for (int col = 0; col < 3; ++col)
                    grid->item(row, col)->setText(QStringLiteral("old"));
            h.net().clearCallLog();
            tabs->setCurrentIndex(2);
        };
        setSatellites(h, {4, 9, 2});
        enter();
        QCOMPARE(testRow(h, 1), (QStringList{"4", "  Nothing", ""}));
        QCOMPARE(testRow(h, 3), (QStringList{"2", "  Nothing", ""}));
        QCOMPARE(testRow(h, 4), marked);
        QVERIFY(grid->updatesEnabled());
        QCOMPARE(h.net().callLog(), (QStringList{"OpenPort", "StartPolling"}));
        QVERIFY(!h.w<QTimer>("Timer2")->isActive()); // the test waits for Start Test

        // No satellites: redrawing stays off and nothing is opened; the count message
        // is replaced at once by the "Ready" of the closing link status query.
        h.net().Satellites().Clear();
        // Refused by the field check, which so never reaches the empty list.
        h.w<QLineEdit>("Text3")->clear();
        enter();
        QCOMPARE(testRow(h, 1), marked);
        QVERIFY(!grid->updatesEnabled());
        QCOMPARE(h.net().callLog(), QStringList{});
        QCOMPARE(h.panel1(), QStringLiteral("Com port inactive"));
        QCOMPARE(h.panel2(), QStringLiteral("Ready"));
        TickHook ticks(h.w<QTimer>("Timer2"), [&](int) { h.click("b_Fin_Test"); });
        h.click("b_Debut_test"); // a tick on an empty list does nothing
        QTRY_COMPARE_WITH_TIMEOUT(ticks.ticks(), 1, 10000);
        QCOMPARE(testRow(h, 1), marked);
        QCOMPARE(h.net().callLog(), QStringList{});
        QCOMPARE(h.panel2(), QStringLiteral("Ready"));

        // Sixteen satellites: the sixteenth has no row, and the error ends the change
        // before the network is started.
        for (qint16 satId = 100; satId < 116; ++satId)
            h.net().Satellites().Add(satId);
        enter();
        QCOMPARE(h.panel2(), QStringLiteral("Run-time error 30009: Invalid Row value"));
        QCOMPARE(testRow(h, 15), (QStringList{"114", "  Nothing", ""}));
        QCOMPARE(h.net().callLog(), QStringList{});
        QCOMPARE(h.panel1(), QStringLiteral("Com port inactive"));
    }

    // Three satellites in turn, one of them silent; the answers keep coming after End
    // Test until a tab change ends the test mode.
    void liveTest() {
        MainHarness h({}, [](SimulatedRadioNet &net) {
            setAir(net, {{.satId = 1, .answers = false},
                         {.satId = 2, .rfVersionMajor = 2, .rfVersionMinor = 5, .rxFree = 28},
                         {.satId = 3, .rfVersionMajor = 1, .rfVersionMinor = 10, .rxFree = 12}});
            net.setAnswerDelayMs(20);
        });
        setSatellites(h, {1, 2, 3});
        h.w<QTabWidget>("Onglet1")->setCurrentIndex(2);
        h.net().clearCallLog();
        auto *grid = h.w<QTableWidget>("MFG2");
        bool redrawAfterEnd = true;
        TickHook ticks(h.w<QTimer>("Timer2"), [&](int tick) {
            if (tick < 4)
                return;
            h.click("b_Fin_Test");
            redrawAfterEnd = redrawAfterEnd && grid->updatesEnabled();
        });

        h.click("b_Debut_test");
        QTRY_COMPARE_WITH_TIMEOUT(ticks.ticks(), 4, 10000);
        QVERIFY(!redrawAfterEnd);
        QVERIFY(!h.w<QTimer>("Timer2")->isActive());
        QCOMPARE(configRequests(h), (QStringList{"RequestConfig 1", "RequestConfig 2",
                                                 "RequestConfig 3", "RequestConfig 1"}));
        QCOMPARE(testRow(h, 1), (QStringList{"1", "  Attempt", ""}));
        QTRY_COMPARE(testRow(h, 2), (QStringList{"2", "     OK", "Version RF:2.5 Mem Free:28 Ko"}));
        QTRY_COMPARE(testRow(h, 3),
                     (QStringList{"3", "     OK", "Version RF:1.10 Mem Free:12 Ko"}));
        // Each answering satellite is asked for its status again and again.
        QTRY_VERIFY(h.net().callLog().filter(QStringLiteral("RequestStatus 2")).size() > 2);
        QVERIFY(h.net().callLog().filter(QStringLiteral("RequestStatus 1")).isEmpty());

        // After End Test the rows still follow the satellites' answers.
        h.net().putOnAir({.satId = 2, .rfVersionMajor = 2, .rfVersionMinor = 5, .rxFree = 40});
        QTRY_COMPARE(testRow(h, 2), (QStringList{"2", "     OK", "Version RF:2.5 Mem Free:40 Ko"}));
        QVERIFY(grid->updatesEnabled());

        // Start Test goes on from the satellite the test stopped at, and wraps to the
        // first one when satellites were removed meanwhile.
        h.click("b_Debut_test");
        QTRY_COMPARE_WITH_TIMEOUT(ticks.ticks(), 5, 10000);
        QCOMPARE(configRequests(h).last(), QStringLiteral("RequestConfig 2"));
        h.net().Satellites().Remove(2);
        h.net().Satellites().Remove(3);
        h.click("b_Debut_test");
        QTRY_COMPARE_WITH_TIMEOUT(ticks.ticks(), 6, 10000);
        QCOMPARE(configRequests(h).last(), QStringLiteral("RequestConfig 1"));

        // Until a tab change: the answers still on their way are ignored and ask nothing.
        h.net().clearCallLog();
        h.w<QTabWidget>("Onglet1")->setCurrentIndex(1);
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), (QStringList{"ClosePort", "OpenPort"}));
    }

    // Ten thousand status answers land during a live test of fifteen satellites, an
    // error among them.
    void statusStorm() {
        MainHarness h({}, [](SimulatedRadioNet &net) {
            net.clearAir();
            for (qint16 satId = 1; satId <= 15; ++satId)
                net.putOnAir({.satId = satId,
                              .rfVersionMajor = 0,
                              .rfVersionMinor = 0,
                              .rxFree = qint16(100 + satId)});
            net.setAnswerDelayMs(20);
        });
        QList<qint16> satIds;
        for (qint16 satId = 1; satId <= 15; ++satId)
            satIds << satId;
        setSatellites(h, satIds);
        h.w<QTabWidget>("Onglet1")->setCurrentIndex(2);
        TickHook ticks(h.w<QTimer>("Timer2"), [](int) {});
        h.click("b_Debut_test");
        QTRY_COMPARE_WITH_TIMEOUT(ticks.ticks(), 1, 10000);

        for (int i = 0; i < 10000; ++i) {
            h.net().raiseStatusReceived(qint16(1 + i % 16)); // Sat ID 16 is in no row
            if (i == 5000)
                h.net().raiseNetError(3, QStringLiteral("Timeout"));
        }
        QVERIFY(settle(h.net(), 300000));
        for (int row = 1; row <= 15; ++row) {
            QTRY_COMPARE(
                testRow(h, row),
                (QStringList{QString::number(row), "     OK",
                             QStringLiteral("Version RF:0.0 Mem Free:%1 Ko").arg(100 + row)}));
        }
        // The status answers of the test leave the error pending: the next tick sends
        // nothing.
        QCOMPARE(h.panel2(), QStringLiteral("Timeout Error n.3"));
        h.net().clearCallLog();
        const int ticked = ticks.ticks();
        QTRY_VERIFY_WITH_TIMEOUT(ticks.ticks() > ticked, 10000);
        QCOMPARE(configRequests(h), QStringList{});
    }
};

QTEST_MAIN(tst_TestMode)
#include "tst_testmode.moc"
