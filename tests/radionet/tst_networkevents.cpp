#include "support/NetSupport.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>

using namespace net_support;

namespace {

const QStringList Marked(6, QStringLiteral("old"));
const QStringList Empty(6, QString());

// The satellite tab open on a typed Sat ID, every value of the network view marked
// so that a test sees which ones a handler rewrote.
void openOn(MainHarness &h, const QString &typed) {
    openSatelliteTab(h);
    h.typeAndLeave("Text3", typed);
    for (int row = 0; row < 6; ++row)
        h.w<QTableWidget>("MFG1")->item(row, 1)->setText(QStringLiteral("old"));
}

} // namespace

class tst_NetworkEvents : public QObject {
    Q_OBJECT

private slots:
    void netError_data() {
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("description");
        QTest::addColumn<bool>("french");
        QTest::addColumn<QString>("panel2");
        QTest::newRow("timeout") << 3 << "Timeout" << false << "Timeout Error n.3";
        QTest::newRow("no description, French") << 9 << "" << true << " Error n.9";
        // Number 0 leaves no error pending, so the link status query says "Ready".
        QTest::newRow("number 0, French") << 0 << "Odd" << true << QString::fromUtf8("Prêt");
    }
    void netError() {
        QFETCH(int, number);
        QFETCH(QString, description);
        QFETCH(bool, french);
        MainHarness h({}, [](SimulatedRadioNet &net) { setAir(net, {{.satId = 5}}); });
        if (french)
            h.trigger("m_French");
        openSatelliteTab(h);
        QVERIFY(detect(h, 5));
        h.net().setLinkStateOverride(3);
        h.w<QLabel>("StatusPanel2")->clear();
        h.net().raiseNetError(qint16(number), description);
        QTRY_COMPARE(networkView(h), Empty);
        QTEST(h.panel2(), "panel2");
        QCOMPARE(h.panel1(), french ? QStringLiteral("COM1 Ouvert Polling Inactif")
                                    : QStringLiteral("COM1 Open Polling halted"));

        // The request mode stays the read-back's: a configuration answer is still shown
        // and asks for the status.
        h.net().setLinkStateOverride(std::nullopt);
        h.net().raiseConfigReceived(5);
        QVERIFY(settle(h.net()));
        QCOMPARE(networkView(h).at(0), QStringLiteral("5"));
        QCOMPARE(h.net().callLog(), QStringList{"RequestStatus 5"});
    }

    void detectionAnswer_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("answeredId");
        QTest::addColumn<QString>("identity");
        QTest::addColumn<QString>("text3");
        QTest::addColumn<QStringList>("view");
        const auto row = [](const char *tag, const char *typed, int answeredId,
                            const char *identity, const char *text3, const QStringList &view) {
            QTest::newRow(tag) << typed << answeredId << identity << text3 << view;
        };
        const QStringList idOnly{"5", "", "", "", "", ""};
        row("QX", "5", 5, "QX NORVALE", "5", idOnly);
        row("lower case qx", "5", 5, "qx norvale", "5", Empty);
        row("XQX", "5", 5, "XQX", "5", Empty);
        row("one letter", "5", 5, "Q", "5", Empty);
        // Another satellite's answer is not shown, yet the current one is asked on.
        row("other Sat ID", "5", 6, "QX NORVALE", "5", Marked);
        // An emptied field becomes 2047, which stands for any satellite.
        row("any satellite, QX", "", 9, "QX NORVALE", "9", {"9", "", "", "", "", ""});
        row("any satellite, foreign", "", 9, "AB", "2047", Empty);
    }
    void detectionAnswer() {
        QFETCH(QString, typed);
        QFETCH(int, answeredId);
        QFETCH(QString, identity);
        QFETCH(QString, text3);
        // Nothing answers: only the raised answer moves anything.
        MainHarness h({}, [](SimulatedRadioNet &net) { net.clearAir(); });
        openOn(h, typed);
        h.net().raiseSatelliteAnswered(qint16(answeredId), identity);
        QVERIFY(settle(h.net()));
        QCOMPARE(h.w<QLineEdit>("Text3")->text(), text3);
        QCOMPARE(h.net().Satellites().Item(1)->SatId(), text3.toShort());
        QTEST(networkView(h), "view");
        QCOMPARE(h.net().callLog(), QStringList{"RequestConfig " + text3});

        // The request mode is now the read-back's: a configuration answer of the shown
        // satellite is taken.
        h.net().clearCallLog();
        h.net().raiseConfigReceived(text3.toShort());
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), QStringList{"RequestStatus " + text3});
    }

    // The 2047 rule holds for the detection and configuration answers, not for the
    // status answer; answers of a satellite not shown are ignored.
    void anySatelliteRule() {
        MainHarness h({}, [](SimulatedRadioNet &net) {
            setAir(net, {{.satId = 12, .rxFree = 40, .txFree = 41}});
        });
        openOn(h, QString());
        auto *text3 = h.w<QLineEdit>("Text3");
        auto *configure = h.w<QPushButton>("b_Config");
        QCOMPARE(text3->text(), QStringLiteral("2047"));
        h.click("b_GetConfig"); // the read-back mode; nothing answers to 2047
        h.net().raiseStatusReceived(12);
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), QStringList{"RequestConfig 2047"});
        QCOMPARE(text3->text(), QStringLiteral("2047"));
        QCOMPARE(networkView(h), Marked);
        QVERIFY(!configure->isEnabled());

        // The satellite object holds what the editor gave it (RS-232, active) and no
        // version yet: the configuration answer shows exactly that.
        h.net().clearCallLog();
        h.w<QLabel>("StatusPanel2")->clear();
        h.net().raiseConfigReceived(12);
        QTRY_COMPARE(h.panel2(), QStringLiteral("Ready"));
        QCOMPARE(text3->text(), QStringLiteral("12"));
        QCOMPARE(h.net().Satellites().Item(1)->SatId(), qint16(12));
        QCOMPARE(h.net().callLog(), QStringList{"RequestStatus 12"});
        const QStringList shown{"12", "RS-232", "1", "0.0", "40 Ko", "41 Ko"};
        QCOMPARE(networkView(h), shown);
        QVERIFY(configure->isEnabled());

        h.net().clearCallLog();
        h.net().raiseConfigReceived(9);
        h.net().raiseStatusReceived(9);
        // A duplicated status answer ends the chain again, asking nothing more.
        h.net().raiseStatusReceived(12);
        h.net().raiseStatusReceived(12);
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), QStringList{});
        QCOMPARE(networkView(h), shown);
        QCOMPARE(h.panel2(), QStringLiteral("Ready"));
    }

    // In the live test the rows are found by Sat ID, the last of repeated ones winning.
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
        h.net().raiseStatusReceived(7);
        h.net().raiseConfigReceived(3);
        h.net().raiseConfigReceived(8);
        h.net().raiseStatusReceived(8);
        QVERIFY(settle(h.net()));
        const QStringList ok{"     OK", "Version RF:0.0 Mem Free:0 Ko"};
        QCOMPARE(testRow(h, 1), (QStringList{"3", "  Attempt", ""}));
        QCOMPARE(testRow(h, 2), QStringList{"7"} + ok);
        QCOMPARE(testRow(h, 3), QStringList{"3"} + ok);
        QCOMPARE(h.net().callLog(),
                 (QStringList{"RequestStatus 3", "RequestStatus 7", "RequestStatus 3"}));
    }

    // A network error at each step of the read-back chain stops it there. It holds
    // back Show configuration, not Detect; a completed chain clears it.
    void errorAtEachStep_data() {
        QTest::addColumn<int>("failing"); // the request that fails, counted from 1
        QTest::newRow("Detect") << 1;
        QTest::newRow("RequestConfig") << 2;
        QTest::newRow("RequestStatus") << 3;
    }
    void errorAtEachStep() {
        QFETCH(int, failing);
        auto answers = std::make_shared<int>(0);
        MainHarness h({}, [&](SimulatedRadioNet &net) {
            setAir(net, {{.satId = 5,
                          .interfaceCode = 2,
                          .enabled = 70000,
                          .rfVersionMajor = 1,
                          .rfVersionMinor = 10}});
            // Connected before the window's handlers: the error is armed before the
            // handler sends the next request.
            const auto arm = [&net, answers, failing] {
                if (++*answers == failing - 1)
                    net.injectNetError(7, QStringLiteral("Lost"));
            };
            QObject::connect(&net, &RadioNetControl::SatelliteAnswered, &net, arm);
            QObject::connect(&net, &RadioNetControl::ConfigReceived, &net, arm);
        });
        openOn(h, QStringLiteral("5"));
        if (failing == 1)
            h.net().injectNetError(7, QStringLiteral("Lost"));
        h.click("b_Alive");
        QTRY_COMPARE(h.panel2(), QStringLiteral("Lost Error n.7"));
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(),
                 QStringList({"Detect 5", "RequestConfig 5", "RequestStatus 5"}).mid(0, failing));
        QCOMPARE(networkView(h), Empty);
        QVERIFY(!h.w<QPushButton>("b_Config")->isEnabled());

        h.net().clearCallLog();
        h.click("b_GetConfig");
        QCOMPARE(h.net().callLog(), QStringList{});
        h.click("b_Alive");
        QTRY_COMPARE(h.panel2(), QStringLiteral("Ready"));
        // Interface code 2 shows as RS-485; the enabled value is 32 bits wide.
        QCOMPARE(networkView(h), (QStringList{"5", "RS-485", "70000", "1.10", "28 Ko", "30 Ko"}));
        QCOMPARE(h.panel1(), QStringLiteral("COM1 Open "));
        h.net().clearCallLog();
        h.click("b_GetConfig");
        QCOMPARE(h.net().callLog(), QStringList{"RequestConfig 5"});
    }
};

QTEST_MAIN(tst_NetworkEvents)
#include "tst_networkevents.moc"
