#include "support/NetSupport.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

using namespace net_support;

namespace {

// A window on the satellite tab whose satellite 1, on the air, has been detected.
struct Detected : MainHarness {
    explicit Detected(bool french = false)
        : MainHarness({}, [](SimulatedRadioNet &net) { setAir(net, {{.satId = 1}}); }) {
        if (french)
            trigger("m_French");
        openSatelliteTab(*this);
        ok = detect(*this, 1);
    }
    // Fills the fields without leaving them.
    void type(const QString &satId, const QString &interfaceText, Qt::CheckState check) {
        w<QLineEdit>("Text3")->setText(satId);
        w<QComboBox>("C_Interface")->setCurrentText(interfaceText);
        w<QCheckBox>("Check1")->setCheckState(check);
    }
    bool ok = false;
};

} // namespace

class tst_SatelliteCommands : public QObject {
    Q_OBJECT

private slots:
    // With an error pending, Show configuration is held back, silently. Detect is sent all
    // the same and ends the read-back mode of an earlier Show configuration: a configuration
    // answer that follows is not shown.
    void queriesWithAnErrorPending() {
        Detected h;
        QVERIFY(h.ok);
        h.net().putOnAir({.satId = 1, .answers = false});
        h.click("b_GetConfig");
        h.net().raiseNetError(4, "Noise");
        QTRY_COMPARE(h.panel2(), "Noise Error n.4");
        QVERIFY(settle(h.net()));
        h.net().clearCallLog();
        h.click("b_GetConfig");
        QCOMPARE(h.net().callLog(), QStringList{});
        QCOMPARE(h.panel2(), "Noise Error n.4");
        h.click("b_Alive");
        h.net().raiseConfigReceived(1);
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), QStringList{"Detect 1"});
        QCOMPARE(networkView(h), QStringList(6, QString()));
    }

    // Satellite 1 becomes satellite 12 on the air and answers under it from then on, or
    // the Sat ID typed is refused.
    void configure_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("interfaceText");
        QTest::addColumn<Qt::CheckState>("check");
        QTest::addColumn<bool>("french");
        QTest::addColumn<QString>("panel2");
        QTest::addColumn<QString>("view"); // read back from the air; empty when refused
        const auto row = [](const char *name, const char *typed, const char *interfaceText,
                            Qt::CheckState check, bool french, const char *panel2,
                            const char *view) {
            QTest::newRow(name) << QString(typed) << QString(interfaceText) << check << french
                                << QString(panel2) << QString(view);
        };
        const char *done = "Norvale configuration12", *invalid = "Invalid Sat ID";
        row("RS-232, active", "12", "RS-232", Qt::Checked, false, done,
            "12|RS-232|1|2.5|28 Ko|30 Ko");
        // Only a plain tick configures the satellite active.
        row("grey", "12", "RS-232", Qt::PartiallyChecked, false, done,
            "12|RS-232|0|2.5|28 Ko|30 Ko");
        row("RS-485, French", "12", "RS-485", Qt::Checked, true, "Configuration du Norvale 12",
            "12|RS-485|1|2.5|28 Ko|30 Ko");
        // 2047 passes the field checks, not this one.
        row("2047", "2047", "RS-485", Qt::Checked, false, invalid, "");
        row("2000 with zeros", "0002000", "RS-485", Qt::Checked, false, invalid, "");
        row("letters after", "12a", "RS-485", Qt::Checked, false, invalid, "");
        row("negative", "-1", "RS-485", Qt::Checked, false, invalid, "");
        row("beyond 16 bits", "65536", "RS-485", Qt::Checked, false, "Run-time error 6: Overflow",
            "");
    }
    void configure() {
        QFETCH(QString, typed);
        QFETCH(QString, interfaceText);
        QFETCH(Qt::CheckState, check);
        QFETCH(bool, french);
        QFETCH(QString, panel2);
        QFETCH(QString, view);
        Detected h(french);
        QVERIFY(h.ok);
        h.type(typed, interfaceText, check);
        h.click("b_Config");
        QCOMPARE(h.panel2(), panel2);
        const SatellitePtr satellite = h.net().Satellites().Item(1);
        if (view.isEmpty()) {
            // Unlike the field checks, the text is left as typed; nothing is written or sent.
            QCOMPARE(h.w<QLineEdit>("Text3")->text(), typed);
            QCOMPARE(satellite->SatId(), qint16(1));
            QCOMPARE(satellite->Interface(), qint16(1));
            QVERIFY(settle(h.net()));
            QCOMPARE(h.net().callLog(), QStringList{});
            return;
        }
        // Sent to the Sat ID the satellite answered to, then detected under the new one
        // once the wait is over, with the air already changed.
        QCOMPARE(h.net().callLog(), (QStringList{"Configure 1 12", "Detect 12"}));
        QVERIFY(!h.net().onAir(1));
        QCOMPARE(satellite->SatId(), qint16(12));
        QTRY_COMPARE(networkView(h).join(u'|'), view);
    }

    // With an error pending the satellite object is written, and nothing is sent.
    void configureWithPendingError() {
        Detected h;
        QVERIFY(h.ok);
        h.typeAndLeave("Text3", "7");
        h.type("7", "RS-485", Qt::Unchecked);
        h.net().raiseNetError(5, "Bad CRC");
        QTRY_COMPARE(h.panel2(), "Bad CRC Error n.5");
        h.click("b_Config");
        QCOMPARE(h.panel2(), "Error :5");
        const SatellitePtr satellite = h.net().Satellites().Item(1);
        QCOMPARE(satellite->SatId(), qint16(1)); // the one it answered to, not the field's 7
        QCOMPARE(satellite->Interface(), qint16(0));
        QCOMPARE(satellite->Enabled(), qint32(0));
        QVERIFY(settle(h.net()));
        QCOMPARE(h.net().callLog(), QStringList{});
        QCOMPARE(h.net().onAir(1)->interfaceCode, qint16(1));
    }

    // A second Configure during the wait of the first: both waits end with the second's.
    void configureDuringTheWait() {
        Detected h;
        QVERIFY(h.ok);
        auto *text3 = h.w<QLineEdit>("Text3");
        text3->setText("12");
        TickHook ticks(h.w<QTimer>("Timer1"), [&](int tick) {
            if (tick == 2) {
                QTimer::singleShot(0, &h.main(), [&] {
                    text3->setText("13");
                    h.click("b_Config");
                });
            }
        });
        Watchdog watchdog("the wait of Configure");
        h.click("b_Config");
        QVERIFY(settle(h.net()));
        // The second message is addressed to Sat ID 1, which has just become 12: no
        // satellite takes it, and nothing answers to 13.
        QCOMPARE(h.net().callLog(), (QStringList{"Configure 1 12", "Configure 1 13", "Detect 13",
                                                 "Detect 12", "RequestConfig 12"}));
        QCOMPARE(h.panel2(), "Norvale configuration13");
        QCOMPARE(h.net().Satellites().Item(1)->SatId(), qint16(12));
        QVERIFY(h.net().onAir(12));
        QVERIFY(!h.net().onAir(13));
    }
};

QTEST_MAIN(tst_SatelliteCommands)
#include "tst_satellitecommands.moc"
