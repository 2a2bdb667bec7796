#include "app/Main.h"
#include "radionet/NetworkChoice.h"
#include "radionet/Scenario.h"
#include "radionet/SerialRadioNet.h"
#include "radionet/SimulatedRadioNet.h"
#include "support/MainHarness.h"

#include <QAction>
#include <QComboBox>
#include <QFocusEvent>
#include <QLabel>
#include <QtTest>

// Which network a window talks to, where it comes from, and how the window names it.
class TestNetworkChoice : public QObject {
    Q_OBJECT

private slots:
    void choice_data() {
        QTest::addColumn<QByteArray>("network");
        QTest::addColumn<bool>("serial");
        QTest::addColumn<QString>("scenario");
        QTest::newRow("no section") << QByteArray() << false << QString();
        QTest::newRow("serial") << QByteArray("Link=Serial\r\n") << true << QString();
        QTest::newRow("any case") << QByteArray("link=sERIAL\r\n") << true << QString();
        QTest::newRow("unknown link") << QByteArray("Link=Radio\r\n") << false << QString();
        QTest::newRow("scenario beside")
            << QByteArray("Scenario=air.ini\r\n") << false << "air.ini";
    }
    void choice() {
        QFETCH(QByteArray, network);
        QFETCH(bool, serial);
        QFETCH(QString, scenario);
        ProgramFolder folder;
        folder.write("Setup.ini", "[General]\r\nLanguage=US\r\n[Network]\r\n" + network);
        const NetworkChoice choice = readNetworkChoice(folder.file("Setup.ini"));
        QCOMPARE(choice.link == NetworkChoice::Link::Serial, serial);
        QCOMPARE(choice.scenario, scenario.isEmpty() ? scenario : folder.file(scenario));
    }

    void label_data() {
        QTest::addColumn<bool>("serial");
        QTest::addColumn<QByteArray>("language");
        QTest::addColumn<QString>("port");
        QTest::addColumn<QString>("shown");
        QTest::newRow("simulated") << false << QByteArray("US") << "COM2"
                                   << "Simulated network";
        QTest::newRow("simulated, French") << false << QByteArray("FR") << "COM2"
                                           << "Réseau simulé";
        QTest::newRow("serial COM1") << true << QByteArray("US") << "COM1"
                                     << "Serial line /dev/ttyS0";
        QTest::newRow("serial device, French") << true << QByteArray("FR") << "/dev/pts/7"
                                               << "Liaison série /dev/pts/7";
    }
    // Shown from start-up, after the port is left, and again in the other language.
    void label() {
        QFETCH(bool, serial);
        QFETCH(QByteArray, language);
        QFETCH(QString, port);
        QFETCH(QString, shown);
        ProgramFolder folder;
        folder.write("Setup.ini", "[General]\r\nVersion=TALMOR NORVALE CONFIGURATION FILE\r\n"
                                  "Language=" +
                                      language + "\r\n");
        RadioNetControl *net =
            serial ? static_cast<RadioNetControl *>(new SerialRadioNet) : new SimulatedRadioNet;
        Main main(net, folder.path(), QString());
        auto *label = main.findChild<QLabel *>("NetworkLabel");
        auto *portBox = main.findChild<QComboBox *>("C_port");
        portBox->setCurrentText(port);
        QFocusEvent leave(QEvent::FocusOut, Qt::TabFocusReason);
        QCoreApplication::sendEvent(portBox, &leave);
        QCOMPARE(label->text(), shown);
        const bool french = language == "FR";
        main.findChild<QAction *>(french ? "m_English" : "m_French")->trigger();
        QVERIFY(label->text() != shown);
        main.findChild<QAction *>(french ? "m_French" : "m_English")->trigger();
        QCOMPARE(label->text(), shown);
    }

    void scenario_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("refusal"); // empty: read
        QTest::addColumn<QList<qint16>>("onAir");
        QTest::newRow("two, in number order")
            << QByteArray("[Satellite10]\nSatId=9\n[Satellite2]\nSatId=4\nSilent=1\n") << QString()
            << QList<qint16>{4, 9};
        QTest::newRow("firmware") << QByteArray("[Satellite1]\nSatId=1\nFirmware=2.x\n")
                                  << "[Satellite1] Firmware: expected major.minor"
                                  << QList<qint16>{};
        QTest::newRow("same id twice")
            << QByteArray("[Satellite1]\nSatId=1\n[Satellite2]\nSatId=1\n")
            << "[Satellite2] SatId: expected a Sat ID no other" << QList<qint16>{};
        QTest::newRow("broadcast id")
            << QByteArray("[Satellite1]\nSatId=2047\n")
            << "[Satellite1] SatId: expected a Sat ID other than 2047" << QList<qint16>{};
        QTest::newRow("no id") << QByteArray("[Satellite1]\nIdentity=QX\n")
                               << "[Satellite1] SatId: expected" << QList<qint16>{};
        QTest::newRow("loss") << QByteArray("[Air]\nLossRate=2\n") << "[Air] LossRate: expected"
                              << QList<qint16>{};
        QTest::newRow("unknown section")
            << QByteArray("[Satelite1]\nSatId=1\n") << "[Satelite1]: expected" << QList<qint16>{};
    }
    void scenario() {
        QFETCH(QByteArray, text);
        QFETCH(QString, refusal);
        QFETCH(QList<qint16>, onAir);
        ProgramFolder folder;
        folder.write("air.ini", text);
        QString error;
        const std::optional<Scenario> read = readScenario(folder.file("air.ini"), error);
        QCOMPARE(read.has_value(), refusal.isEmpty());
        if (!refusal.isEmpty())
            QVERIFY2(error.startsWith(folder.file("air.ini") + ": " + refusal), qPrintable(error));
        QList<qint16> ids;
        for (const OnAirSatellite &s : read ? read->satellites : std::vector<OnAirSatellite>{})
            ids.append(s.satId);
        QCOMPARE(ids, onAir);
        if (read) // the silent one stays silent
            QVERIFY(!read->air().find(4)->answers);
    }
};

QTEST_MAIN(TestNetworkChoice)
#include "tst_networkchoice.moc"
