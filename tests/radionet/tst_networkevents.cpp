#include "support/NetSupport.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>

using namespace net_support;

namespace {

// Marks every value of the network view, so that a test sees which ones a handler
// rewrote.
void markNetworkView(MainHarness &h) {
    auto *grid = h.w<QTableWidget>("MFG1");
    for (int row = 0; row < 6; ++row)
        grid->item(row, 1)->setText(QStringLiteral("old"));
}

const QStringList Marked(6, QStringLiteral("old"));
const QStringList Empty(6, QString());

} // namespace

class tst_NetworkEvents : public QObject {
    Q_OBJECT

private slots:
    // Detect -> SatelliteAnswered -> RequestConfig -> ConfigReceived -> RequestStatus
    // -> StatusReceived, started with an error pending that the status answer clears.
    void readBackChain_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<OnAirSatellite>("onAir");
        QTest::addColumn<QString>("shownSatId");
        QTest::addColumn<QStringList>("view");
        QTest::addColumn<QStringList>("log");

        QTest::newRow("by its Sat ID")
            << "5"
            << OnAirSatellite{.satId = 5,
                              .rfVersionMajor = 2,
                              .rfVersionMinor = 5,
                              .rxFree = 28,
                              .txFree = 30}
            << "5" << QStringList{"5", "RS-232", "1", "2.5", "28 Ko", "30 Ko"}
            << QStringList{"Detect 5", "RequestConfig 5", "RequestStatus 5"};
        // An emptied field becomes 2047, which any satellite answers.
        QTest::newRow("any satellite")
            << ""
            << OnAirSatellite{.satId = 7,
                              .interfaceCode = 0,
                              .enabled = 0,
                              .rfVersionMajor = 1,
                              .rfVersionMinor = 10,
                              .rxFree = 12,
                              .txFree = 14}
            << "7" << QStringList{"7", "RS-485", "0", "1.10", "12 Ko", "14 Ko"}
            << QStringList{"Detect 2047", "RequestConfig 7", "RequestStatus 7"};
        QTest::newRow("interface code 2, enabled beyond 16 bits")
            << "1999"
            << OnAirSatellite{.satId = 1999,
                              .interfaceCode = 2,
                              .enabled = 70000,
                              .rfVersionMajor = 3,
                              .rfVersionMinor = 0,
                              .rxFree = 0,
                              .txFree = 1}
            << "1999" << QStringList{"1999", "RS-485", "70000", "3.0", "0 Ko", "1 Ko"}
            << QStringList{"Detect 1999", "RequestConfig 1999", "RequestStatus 1999"};
    }
    void readBackChain() {
        QFETCH(QString, typed);
        QFETCH(OnAirSatellite, onAir);
        QFETCH(QString, shownSatId);
        QFETCH(QStringList, view);
        QFETCH(QStringList, log);

        MainHarness h({}, [&](SimulatedRadioNet &net) {
            setAir(net, {OnAirSatellite{.satId = 1500, .answers = false}, onAir});
        });
        openSatelliteTab(h);
        h.typeAndLeave("Text3", typed);
        auto *configure = h.w<QPushButton>("b_Config");
        QVERIFY(!configure->isEnabled());
        h.net().raiseNetError(3, QStringLiteral("Timeout"));
        QTRY_COMPARE(h.panel2(), QStringLiteral("Timeout Error n.3"));

        // Detect is not held back by the pending error; the chain runs on from the answer.
        h.click("b_Alive");
        QTRY_COMPARE(h.panel2(), QStringLiteral("Ready"));
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), log);
        QCOMPARE(networkView(h), view);
        QCOMPARE(h.w<QLineEdit>("Text3")->text(), shownSatId);
        QCOMPARE(h.net().Satellites().Item(1)->SatId(), shownSatId.toShort());
        QCOMPARE(h.panel1(), QStringLiteral("COM1 Open "));
        QVERIFY(configure->isEnabled());

        // The error is cleared: Show configuration sends again.
        h.net().clearCallLog();
        h.click("b_GetConfig");
        QCOMPARE(h.net().callLog(), QStringList{"RequestConfig " + shownSatId});
    }

    void netError_data() {
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("description");
        QTest::addColumn<QString>("panel2");
        QTest::addColumn<QString>("panel2French");

        QTest::newRow("timeout") << 3 << "Timeout"
                                 << "Timeout Error n.3"
                                 << "Timeout Error n.3";
        QTest::newRow("bad CRC") << 5 << "Bad CRC"
                                 << "Bad CRC Error n.5"
                                 << "Bad CRC Error n.5";
        QTest::newRow("no description") << 9 << ""
                                        << " Error n.9"
                                        << " Error n.9";
        QTest::newRow("negative") << -2 << "X"
                                  << "X Error n.-2"
                                  << "X Error n.-2";
        // Number 0 leaves no error pending, so the link status query says "Ready".
        QTest::newRow("number 0") << 0 << "Odd"
                                  << "Ready"
                                  << "Prêt";
    }
    void netError() {
        QFETCH(int, number);
        QFETCH(QString, description);
        QFETCH(QString, panel2);
        QFETCH(QString, panel2French);

        for (const bool french : {false, true}) {
            MainHarness h({}, [](SimulatedRadioNet &net) { setAir(net, {{.satId = 5}}); });
            if (french)
                h.trigger("m_French");
            openSatelliteTab(h);
            QVERIFY(detect(h, 5));
            h.net().setLinkStateOverride(3);

            h.w<QLabel>("StatusPanel2")->clear();
            h.net().raiseNetError(qint16(number), description);
            QTRY_COMPARE(networkView(h), Empty);
            QCOMPARE(h.panel2(), french ? panel2French : panel2);
            QCOMPARE(h.panel1(), french ? QStringLiteral("COM1 Ouvert Polling Inactif")
                                        : QStringLiteral("COM1 Open Polling halted"));

            // The request mode stays that of the read-back: a configuration answer is
            // still shown and asks for the status.
            h.net().setLinkStateOverride(std::nullopt);
            h.net().raiseConfigReceived(5);
            QTRY_COMPARE(networkView(h).at(0), QStringLiteral("5"));
            QVERIFY(settle(h.net()));
            QCOMPARE(h.net().callLog(), QStringList{"RequestStatus 5"});
        }
    }

    void detectionAnswer_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("answeredId");
        QTest::addColumn<QString>("identity");
        QTest::addColumn<QString>("text3");
        QTest::addColumn<QStringList>("view");
        QTest::addColumn<QString>("configRequest");

        const QStringList blankedWithId{"5", "", "", "", "", ""};
        QTest::newRow("QX") << "5" << 5 << "QX NORVALE"
                            << "5" << blankedWithId << "RequestConfig 5";
        QTest::newRow("just QX") << "5" << 5 << "QX"
                                 << "5" << blankedWithId << "RequestConfig 5";
        QTest::newRow("lower case qx") << "5" << 5 << "qx norvale"
                                       << "5" << Empty << "RequestConfig 5";
        QTest::newRow("XQX") << "5" << 5 << "XQX"
                             << "5" << Empty << "RequestConfig 5";
        QTest::newRow("one letter") << "5" << 5 << "Q"
                                    << "5" << Empty << "RequestConfig 5";
        QTest::newRow("empty identity") << "5" << 5 << ""
                                        << "5" << Empty << "RequestConfig 5";
        // Another satellite's answer is not shown, yet the current one is asked on.
        QTest::newRow("other Sat ID") << "5" << 6 << "QX NORVALE"
                                      << "5" << Marked << "RequestConfig 5";
        QTest::newRow("any satellite, QX")
            << "" << 9 << "QX NORVALE"
            << "9" << QStringList{"9", "", "", "", "", ""} << "RequestConfig 9";
        QTest::newRow("any satellite, foreign") << "" << 9 << "AB"
                                                << "2047" << Empty << "RequestConfig 2047";
    }
    void detectionAnswer() {
        QFETCH(QString, typed);
        QFETCH(int, answeredId);
        QFETCH(QString, identity);
        QFETCH(QString, text3);
        QFETCH(QStringList, view);
        QFETCH(QString, configRequest);

        // Nothing answers: only the raised answer moves anything.
        MainHarness h({}, [](SimulatedRadioNet &net) { net.clearAir(); });
        openSatelliteTab(h);
        h.typeAndLeave("Text3", typed);
        markNetworkView(h);

        h.net().raiseSatelliteAnswered(qint16(answeredId), identity);
        QVERIFY(settle(h.net()));
        QCOMPARE(h.w<QLineEdit>("Text3")->text(), text3);
        QCOMPARE(h.net().Satellites().Item(1)->SatId(), text3.toShort());
        QCOMPARE(networkView(h), view);
        QCOMPARE(h.net().callLog(), QStringList{configRequest});

        // The request mode is now the read-back's: a configuration answer of the shown
        // satellite is taken.
        h.net().clearCallLog();
        h.net().raiseConfigReceived(text3.toShort());
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), QStringList{"RequestStatus " + text3});
    }

    // The 2047 rule holds for the detection and configuration answers, not for the
    // status answer.
    void anySatelliteRule() {
        MainHarness h({}, [](SimulatedRadioNet &net) {
            setAir(net, {{.satId = 12, .rxFree = 40, .txFree = 41}});
        });
        openSatelliteTab(h);
        h.typeAndLeave("Text3", QString());
        auto *text3 = h.w<QLineEdit>("Text3");
        QCOMPARE(text3->text(), QStringLiteral("2047"));
        h.click("b_GetConfig"); // the read-back mode; nothing answers to 2047
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), QStringList{"RequestConfig 2047"});

        h.net().raiseStatusReceived(12);
        QVERIFY(settle(h.net()));
        QCOMPARE(text3->text(), QStringLiteral("2047"));
        QCOMPARE(networkView(h), Empty);
        QVERIFY(!h.w<QPushButton>("b_Config")->isEnabled());

        // The satellite object holds what the editor gave it (RS-232, active) and no
        // version yet: the configuration answer shows exactly that.
        h.net().clearCallLog();
        h.w<QLabel>("StatusPanel2")->clear();
        h.net().raiseConfigReceived(12);
        QTRY_COMPARE(h.panel2(), QStringLiteral("Ready"));
        QVERIFY(settle(h.net()));
        QCOMPARE(text3->text(), QStringLiteral("12"));
        QCOMPARE(h.net().Satellites().Item(1)->SatId(), qint16(12));
        QCOMPARE(h.net().callLog(), QStringList{"RequestStatus 12"});
        QCOMPARE(networkView(h), (QStringList{"12", "RS-232", "1", "0.0", "40 Ko", "41 Ko"}));
        QVERIFY(h.w<QPushButton>("b_Config")->isEnabled());
    }

    // The test view's rows are found by Sat ID, the last of repeated ones winning.
    void findSatelliteIndex() {
        MainHarness h({}, [](SimulatedRadioNet &net) { net.clearAir(); });
        h.typeAndLeave("Text3", QStringLiteral("3"));
        h.net().Satellites().Add(7);
        h.net().Satellites().Add(3);
        h.w<QTabWidget>("Onglet1")->setCurrentIndex(2);
        TickHook stopAtFirstTick(h.w<QTimer>("Timer2"), [&](int) { h.click("b_Fin_Test"); });
        h.click("b_Debut_test");
        QTRY_COMPARE(stopAtFirstTick.ticks(), 1);
        QVERIFY(settle(h.net()));
        h.net().clearCallLog();

        h.net().raiseStatusReceived(3);
        QVERIFY(settle(h.net()));
        QCOMPARE(testRow(h, 1), (QStringList{"3", "  Attempt", ""}));
        QCOMPARE(testRow(h, 2), (QStringList{"7", "  Nothing", ""}));
        QCOMPARE(testRow(h, 3), (QStringList{"3", "     OK", "Version RF:0.0 Mem Free:0 Ko"}));
        QCOMPARE(h.net().callLog(), QStringList{"RequestStatus 3"});

        h.net().clearCallLog();
        h.net().raiseStatusReceived(7);
        h.net().raiseConfigReceived(3);
        h.net().raiseConfigReceived(8);
        h.net().raiseStatusReceived(8);
        QVERIFY(settle(h.net()));
        QCOMPARE(testRow(h, 2), (QStringList{"7", "     OK", "Version RF:0.0 Mem Free:0 Ko"}));
        QCOMPARE(h.net().callLog(), (QStringList{"RequestStatus 7", "RequestStatus 3"}));

        // An empty list finds nothing, and nothing fails.
        h.net().Satellites().Clear();
        h.net().clearCallLog();
        const QString panel2 = h.panel2();
        h.net().raiseConfigReceived(3);
        h.net().raiseStatusReceived(3);
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), QStringList{});
        QCOMPARE(h.panel2(), panel2);
    }

    // A network error injected at each step of the read-back chain stops it there.
    void errorAtEachStep_data() {
        QTest::addColumn<QString>("failing");
        QTest::addColumn<QStringList>("log");
        QTest::newRow("Detect") << "Detect" << QStringList{"Detect 5"};
        QTest::newRow("RequestConfig")
            << "RequestConfig" << QStringList{"Detect 5", "RequestConfig 5"};
        QTest::newRow("RequestStatus")
            << "RequestStatus" << QStringList{"Detect 5", "RequestConfig 5", "RequestStatus 5"};
    }
    void errorAtEachStep() {
        QFETCH(QString, failing);
        QFETCH(QStringList, log);

        // Connected before the window's own handlers, so the error is armed before the
        // handler sends the next request.
        auto armed = std::make_shared<bool>(false);
        MainHarness h({}, [&](SimulatedRadioNet &net) {
            setAir(net, {{.satId = 5}});
            const auto injectBefore = [&net, armed](const char *step, const QString &failing) {
                return [&net, armed, step, failing] {
                    if (*armed && failing == QLatin1String(step)) {
                        *armed = false;
                        net.injectNetError(7, QStringLiteral("Lost"));
                    }
                };
            };
            QObject::connect(&net, &RadioNetControl::SatelliteAnswered, &net,
                             injectBefore("RequestConfig", failing));
            QObject::connect(&net, &RadioNetControl::ConfigReceived, &net,
                             injectBefore("RequestStatus", failing));
        });
        openSatelliteTab(h);
        h.typeAndLeave("Text3", QStringLiteral("5"));
        markNetworkView(h);
        *armed = true;
        if (failing == QLatin1String("Detect")) {
            *armed = false;
            h.net().injectNetError(7, QStringLiteral("Lost"));
        }

        h.click("b_Alive");
        QTRY_COMPARE(h.panel2(), QStringLiteral("Lost Error n.7"));
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), log);
        QCOMPARE(networkView(h), Empty);
        QVERIFY(!h.w<QPushButton>("b_Config")->isEnabled());

        // The pending error holds back Show configuration, not Detect; a completed
        // chain clears it.
        h.net().clearCallLog();
        h.click("b_GetConfig");
        QCOMPARE(h.net().callLog(), QStringList{});
        h.click("b_Alive");
        QTRY_COMPARE(h.panel2(), QStringLiteral("Ready"));
        QCOMPARE(networkView(h), (QStringList{"5", "RS-232", "1", "2.5", "28 Ko", "30 Ko"}));
        h.net().clearCallLog();
        h.click("b_GetConfig");
        QCOMPARE(h.net().callLog(), QStringList{"RequestConfig 5"});
    }

    // Silent satellites, answers nobody asked for, answers twice over.
    void strayAnswers() {
        MainHarness h({}, [](SimulatedRadioNet &net) {
            setAir(net, {{.satId = 5, .rxFree = 20}, {.satId = 6, .answers = false}});
        });
        openSatelliteTab(h);
        h.typeAndLeave("Text3", QStringLiteral("6"));
        const QString panel2 = h.panel2();
        h.click("b_Alive");
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), QStringList{"Detect 6"});
        QCOMPARE(networkView(h), Empty);
        QCOMPARE(h.panel2(), panel2);

        QVERIFY(detect(h, 5));
        const QStringList shown{"5", "RS-232", "1", "2.5", "20 Ko", "30 Ko"};
        QCOMPARE(networkView(h), shown);

        // Configuration and status of a satellite not shown are ignored.
        h.net().raiseConfigReceived(9);
        h.net().raiseStatusReceived(9);
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), QStringList{});
        QCOMPARE(networkView(h), shown);

        // A detection answer twice over runs the chain twice, to the same end.
        h.net().putOnAir({.satId = 5, .rxFree = 21});
        h.w<QLabel>("StatusPanel2")->clear();
        h.net().raiseSatelliteAnswered(5, QStringLiteral("QX NORVALE"));
        h.net().raiseSatelliteAnswered(5, QStringLiteral("QX NORVALE"));
        QTRY_COMPARE(h.panel2(), QStringLiteral("Ready"));
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), (QStringList{"RequestConfig 5", "RequestConfig 5",
                                                 "RequestStatus 5", "RequestStatus 5"}));
        QCOMPARE(networkView(h), (QStringList{"5", "RS-232", "1", "2.5", "21 Ko", "30 Ko"}));
    }
};

QTEST_MAIN(tst_NetworkEvents)
#include "tst_networkevents.moc"
