#include "support/NetSupport.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

using namespace net_support;

class tst_SatelliteCommands : public QObject {
    Q_OBJECT

private slots:
    void detectAndShowConfiguration() {
        MainHarness h({}, [](SimulatedRadioNet &net) { setAir(net, {{.satId = 5}}); });
        openSatelliteTab(h);
        QVERIFY(detect(h, 5));
        h.net().putOnAir({.satId = 5, .answers = false});
        h.net().raiseNetError(4, QStringLiteral("Noise"));
        QTRY_COMPARE(h.panel2(), QStringLiteral("Noise Error n.4"));

        // A pending error holds back Show configuration, silently.
        h.click("b_GetConfig");
        QCOMPARE(h.net().callLog(), QStringList{});
        QCOMPARE(h.panel2(), QStringLiteral("Noise Error n.4"));

        // Detect is sent all the same, and leaves no request mode: a configuration
        // answer that follows is not shown.
        h.click("b_Alive");
        h.net().raiseConfigReceived(5);
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), QStringList{"Detect 5"});
        QCOMPARE(networkView(h), QStringList(6, QString()));

        // A tab change clears the error; Show configuration then reads the satellite
        // back.
        h.net().putOnAir({.satId = 5, .rfVersionMajor = 4, .rfVersionMinor = 2, .rxFree = 9});
        h.w<QTabWidget>("Onglet1")->setCurrentIndex(0);
        openSatelliteTab(h);
        h.w<QLabel>("StatusPanel2")->clear();
        h.click("b_GetConfig");
        QTRY_COMPARE(h.panel2(), QStringLiteral("Ready"));
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), (QStringList{"RequestConfig 5", "RequestStatus 5"}));
        QCOMPARE(networkView(h), (QStringList{"5", "RS-232", "1", "4.2", "9 Ko", "30 Ko"}));
        QVERIFY(h.w<QPushButton>("b_Config")->isEnabled());
    }

    void configureRefusesSatId_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("french");
        QTest::addColumn<QString>("panel2");

        const QString invalid = QStringLiteral("Invalid Sat ID");
        // Accepted by the fields, refused here.
        QTest::newRow("2047") << "2047" << false << invalid;
        QTest::newRow("2047, French") << "2047" << true << "Sat ID non valide";
        QTest::newRow("2000") << "2000" << false << invalid;
        QTest::newRow("2000 with zeros") << "0002000" << false << invalid;
        QTest::newRow("empty") << "" << false << invalid;
        QTest::newRow("letters after") << "12a" << false << invalid;
        QTest::newRow("blank before") << " 12" << false << invalid;
        QTest::newRow("sign") << "+12" << false << invalid;
        QTest::newRow("negative") << "-1" << false << invalid;
        QTest::newRow("decimal") << "1.5" << false << invalid;
        // All digits, but past 16 bits: the conversion itself fails.
        QTest::newRow("beyond 16 bits") << "65536" << false << "Run-time error 6: Overflow";
    }
    void configureRefusesSatId() {
        QFETCH(QString, typed);
        QFETCH(bool, french);
        QFETCH(QString, panel2);

        MainHarness h({}, [](SimulatedRadioNet &net) { setAir(net, {{.satId = 1}}); });
        if (french)
            h.trigger("m_French");
        openSatelliteTab(h);
        QVERIFY(detect(h, 1));
        h.w<QComboBox>("C_Interface")->setCurrentText(QStringLiteral("RS-485"));
        h.w<QLineEdit>("Text3")->setText(typed);

        h.click("b_Config");
        QCOMPARE(h.panel2(), panel2);
        // Unlike the field checks, the text is left as typed.
        QCOMPARE(h.w<QLineEdit>("Text3")->text(), typed);
        const SatellitePtr satellite = h.net().Satellites().Item(1);
        QCOMPARE(satellite->SatId(), qint16(1));
        QCOMPARE(satellite->Interface(), qint16(1));
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), QStringList{});
        QCOMPARE(h.net().onAir(1)->satId, qint16(1));
    }

    // Satellite 1 becomes satellite 12 on the air and answers under it from then on.
    void configure_data() {
        QTest::addColumn<QString>("interfaceText");
        QTest::addColumn<Qt::CheckState>("check");
        QTest::addColumn<bool>("french");
        QTest::addColumn<int>("interfaceCode");
        QTest::addColumn<int>("enabled");
        QTest::addColumn<QString>("panel2");

        QTest::newRow("RS-232, active")
            << "RS-232" << Qt::Checked << false << 1 << 1 << "Norvale configuration12";
        QTest::newRow("RS-485, inactive")
            << "RS-485" << Qt::Unchecked << false << 0 << 0 << "Norvale configuration12";
        // Only a plain tick configures the satellite active.
        QTest::newRow("grey check box")
            << "RS-232" << Qt::PartiallyChecked << false << 1 << 0 << "Norvale configuration12";
        QTest::newRow("French") << "RS-485" << Qt::Checked << true << 0 << 1
                                << "Configuration du Norvale 12";
    }
    void configure() {
        QFETCH(QString, interfaceText);
        QFETCH(Qt::CheckState, check);
        QFETCH(bool, french);
        QFETCH(int, interfaceCode);
        QFETCH(int, enabled);
        QFETCH(QString, panel2);

        MainHarness h({}, [](SimulatedRadioNet &net) { setAir(net, {{.satId = 1}}); });
        if (french)
            h.trigger("m_French");
        openSatelliteTab(h);
        QVERIFY(detect(h, 1));
        h.w<QLineEdit>("Text3")->setText(QStringLiteral("12"));
        h.w<QComboBox>("C_Interface")->setCurrentText(interfaceText);
        h.w<QCheckBox>("Check1")->setCheckState(check);

        h.click("b_Config");
        // Sent to the Sat ID the satellite answered to, then detected under the new
        // one once the wait is over, with the air already changed.
        QCOMPARE(h.net().callLog(), (QStringList{"Configure 1 12", "Detect 12"}));
        QCOMPARE(h.panel2(), panel2);
        QVERIFY(!h.net().onAir(1));
        QVERIFY(h.net().onAir(12));
        QCOMPARE(h.net().onAir(12)->interfaceCode, qint16(interfaceCode));
        QCOMPARE(h.net().onAir(12)->enabled, qint32(enabled));
        const SatellitePtr satellite = h.net().Satellites().Item(1);
        QCOMPARE(satellite->SatId(), qint16(12));

        // The detection answers under Sat ID 12 and reads it back.
        const QString interfaceName = interfaceCode == 1 ? "RS-232" : "RS-485";
        QTRY_COMPARE(networkView(h), (QStringList{"12", interfaceName, QString::number(enabled),
                                                  "2.5", "28 Ko", "30 Ko"}));
        QCOMPARE(h.w<QLineEdit>("Text3")->text(), QStringLiteral("12"));

        h.net().clearCallLog();
        h.click("b_Alive");
        QTRY_COMPARE(h.net().callLog(),
                     (QStringList{"Detect 12", "RequestConfig 12", "RequestStatus 12"}));
    }

    // With an error pending the satellite object is written, and nothing is sent.
    void configureWithPendingError() {
        MainHarness h({}, [](SimulatedRadioNet &net) { setAir(net, {{.satId = 1}}); });
        openSatelliteTab(h);
        QVERIFY(detect(h, 1));
        h.typeAndLeave("Text3", QStringLiteral("7"));
        const SatellitePtr satellite = h.net().Satellites().Item(1);
        QCOMPARE(satellite->SatId(), qint16(7));
        h.w<QComboBox>("C_Interface")->setCurrentText(QStringLiteral("RS-485"));
        h.w<QCheckBox>("Check1")->setCheckState(Qt::Unchecked);
        h.net().raiseNetError(5, QStringLiteral("Bad CRC"));
        QTRY_COMPARE(h.panel2(), QStringLiteral("Bad CRC Error n.5"));

        h.click("b_Config");
        QCOMPARE(h.panel2(), QStringLiteral("Error :5"));
        QCOMPARE(satellite->SatId(), qint16(1));
        QCOMPARE(satellite->Interface(), qint16(0));
        QCOMPARE(satellite->Enabled(), qint32(0));
        QCOMPARE(h.w<QLineEdit>("Text3")->text(), QStringLiteral("7"));
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), QStringList{});
        QCOMPARE(h.net().onAir(1)->interfaceCode, qint16(1));
    }

    // A second Configure during the wait of the first runs with a wait of its own;
    // when it ends the first wait ends with it, without ticks of its own.
    void configureDuringTheWait() {
        MainHarness h({}, [](SimulatedRadioNet &net) { setAir(net, {{.satId = 1}}); });
        openSatelliteTab(h);
        QVERIFY(detect(h, 1));
        auto *text3 = h.w<QLineEdit>("Text3");
        text3->setText(QStringLiteral("12"));

        int nestedFromTick = -1;
        TickHook ticks(h.w<QTimer>("Timer1"), [&](int tick) {
            if (tick != 2)
                return;
            QTimer::singleShot(0, &h.main(), [&] {
                nestedFromTick = ticks.ticks();
                text3->setText(QStringLiteral("13"));
                h.click("b_Config");
            });
        });
        Watchdog watchdog("the wait of Configure");
        h.click("b_Config");
        QCOMPARE(ticks.ticks() - nestedFromTick, 5);
        QVERIFY(!h.w<QTimer>("Timer1")->isActive());
        QVERIFY(settle(h.net()));
        // The second message is addressed to Sat ID 1, which has just become 12: no
        // satellite takes it, and nothing answers to 13.
        QCOMPARE(h.net().callLog(), (QStringList{"Configure 1 12", "Configure 1 13", "Detect 13",
                                                 "Detect 12", "RequestConfig 12"}));
        QCOMPARE(h.panel2(), QStringLiteral("Norvale configuration13"));
        QCOMPARE(h.net().Satellites().Item(1)->SatId(), qint16(12));
        QVERIFY(h.net().onAir(12));
        QVERIFY(!h.net().onAir(13));
    }
};

QTEST_MAIN(tst_SatelliteCommands)
#include "tst_satellitecommands.moc"
