#include "app/Main.h"
#include "radionet/SerialRadioNet.h"
#include "support/FarEnd.h"
#include "support/MainHarness.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QTabWidget>
#include <QTableWidget>
#include <QtTest>
#include <unistd.h>

namespace {

// Satellites 1 and 3 answer, 4 is silent.
Air testAir() {
    Air air;
    air.put({.satId = 1});
    air.put({.satId = 3, .identity = "QX THREE", .interfaceCode = 0, .rxFree = 56, .txFree = 60});
    air.put({.satId = 4, .answers = false});
    return air;
}

} // namespace

class TestSerialRadioNet : public QObject {
    Q_OBJECT

    QStringList events_;
    void record(SerialRadioNet &net) {
        connect(&net, &RadioNetControl::NetError, this, [this](qint16 n, const QString &text) {
            events_ << QStringLiteral("NetError %1 %2").arg(n).arg(text);
        });
        connect(&net, &RadioNetControl::SatelliteAnswered, this,
                [this](qint16 id, const QString &identity) {
                    events_ << QStringLiteral("Answered %1 %2").arg(id).arg(identity);
                });
        connect(&net, &RadioNetControl::ConfigReceived, this, [this, &net](qint16 id) {
            const SatellitePtr s = net.Satellites().Item(1);
            events_ << QStringLiteral("Config %1 %2 %3 %4.%5")
                           .arg(id)
                           .arg(s->Interface())
                           .arg(s->Enabled())
                           .arg(s->RfVersionMajor())
                           .arg(s->RfVersionMinor());
        });
        connect(&net, &RadioNetControl::StatusReceived, this, [this, &net](qint16 id) {
            const SatellitePtr s = net.Satellites().Item(1);
            events_ << QStringLiteral("Status %1 %2 %3").arg(id).arg(s->RxFree()).arg(s->TxFree());
        });
    }

private slots:
    void init() { events_.clear(); }

    // Each request, over a real pseudo-terminal, with what the line does to the answers.
    void exchanges_data() {
        QTest::addColumn<QString>("line"); // clean, garbage, corrupt-first
        QTest::addColumn<QString>("requests");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<int>("framesSent");
        QTest::newRow("detect") << "clean"
                                << "D3" << QStringList{"Answered 3 QX THREE"} << 1;
        QTest::newRow("any satellite") << "clean"
                                       << "D2047" << QStringList{"Answered 1 QX NORVALE"} << 1;
        QTest::newRow("config, status")
            << "clean"
            << "C3 S3" << QStringList{"Config 3 0 1 2.5", "Status 3 56 60"} << 2;
        QTest::newRow("asked twice, sent once") << "clean"
                                                << "S3 S3" << QStringList{"Status 3 56 60"} << 1;
        QTest::newRow("configure renames on the air")
            << "clean"
            << "K3>9 C9 D3"
            << QStringList{"Config 9 1 0 2.5", "NetError 6 No answer from satellite 3"} << 5;
        QTest::newRow("silent: three tries")
            << "clean"
            << "D4" << QStringList{"NetError 6 No answer from satellite 4"} << 3;
        QTest::newRow("corrupted answer, tried again")
            << "corrupt-first"
            << "D3" << QStringList{"Answered 3 QX THREE"} << 2;
        QTest::newRow("another speed")
            << "garbage"
            << "D3" << QStringList{"NetError 7 Answers on /dev/pts/"} << 3;
    }
    void exchanges() {
        QFETCH(QString, line);
        QFETCH(QString, requests);
        QFETCH(QStringList, expected);
        QFETCH(int, framesSent);
        FarEnd farEnd(testAir());
        int answers = 0;
        farEnd.tamper = [&](const QByteArray &bytes) {
            ++answers;
            if (line == u"garbage") // what bytes sent at another speed look like
                return QByteArray("\x7f\x3c\xe6\x18\x00\x91\x00", 7);
            if (line == u"corrupt-first" && answers == 1)
                return QByteArray(bytes).replace(2, 1, "\x55");
            return bytes;
        };
        SerialRadioNet net;
        record(net);
        net.setCommPort(farEnd.device());
        net.setTimeOut(20);
        QVERIFY(net.OpenPort());
        QCOMPARE(net.LinkState(), 1);
        const SatellitePtr satellite = net.Satellites().Add(0);
        for (const QString &request : requests.split(u' ')) {
            const QStringList idAndNew = request.mid(1).split(u'>');
            satellite->setSatId(qint16(idAndNew[0].toInt()));
            switch (request[0].unicode()) {
            case 'D':
                satellite->Detect();
                break;
            case 'C':
                satellite->RequestConfig();
                break;
            case 'S':
                satellite->RequestStatus();
                break;
            case 'K':
                satellite->setNewSatId(qint16(idAndNew[1].toInt()));
                satellite->setEnabled(0);
                satellite->setInterface(1);
                satellite->Configure();
                break;
            }
        }
        QVERIFY(events_.isEmpty()); // never inside the call
        QTRY_COMPARE(events_.size(), expected.size());
        for (int i = 0; i < expected.size(); ++i)
            QVERIFY2(events_[i].startsWith(expected[i]), qPrintable(events_[i]));
        QCOMPARE(int(net.counters().framesSent), framesSent);
    }

    // The port and what can go wrong with it: each ends in its own NetError.
    void port_data() {
        QTest::addColumn<QString>("what");
        QTest::addColumn<int>("error");
        QTest::newRow("missing device") << "missing" << 2;
        QTest::newRow("busy") << "busy" << 4;
        QTest::newRow("no rights") << "rights" << 3;
        QTest::newRow("polling on a closed port") << "closed" << 1;
        QTest::newRow("cable pulled") << "pulled" << 5;
        QTest::newRow("no network behind the port") << "nobody" << 6;
    }
    void port() {
        QFETCH(QString, what);
        QFETCH(int, error);
        if (what == u"rights" && ::geteuid() == 0)
            QSKIP("runs as root, for whom every device opens: no device without rights");
        FarEnd farEnd(testAir());
        if (what == u"nobody")
            farEnd.tamper = [](const QByteArray &) { return QByteArray(); };
        if (what == u"rights")
            QFile::setPermissions(farEnd.device(), QFileDevice::ReadOwner);
        SerialRadioNet other;
        other.setCommPort(farEnd.device());
        if (what == u"busy")
            QVERIFY(other.OpenPort());
        SerialRadioNet net;
        record(net);
        net.setTimeOut(20);
        net.setCommPort(what == u"missing" ? QStringLiteral("/dev/norvale-none") : farEnd.device());
        const bool opens = what == u"pulled" || what == u"nobody";
        if (what != u"closed")
            QCOMPARE(net.OpenPort(), opens);
        if (opens || what == u"closed")
            QCOMPARE(net.StartPolling(), opens);
        if (what == u"pulled") {
            QTRY_COMPARE(int(net.counters().framesReceived), 1); // the network is there
            farEnd.cut();
        }
        QTRY_COMPARE(events_.size(), 1);
        QVERIFY2(events_[0].startsWith(QStringLiteral("NetError %1 ").arg(error)),
                 qPrintable(events_[0]));
        QCOMPARE(net.LinkState(), opens && what != u"pulled" ? 2 : 0);
    }

    // The window over a line to the emulator, as a technician uses it: detect, read
    // back, a new Sat ID, the live test; then the emulator stops in the middle.
    void windowOverTheLine() {
        QProcess netsim;
        netsim.start(NORVALE_NETSIM_PATH, {"--pty"});
        QTRY_VERIFY(netsim.canReadLine());
        const QString device = QString::fromLocal8Bit(netsim.readLine().trimmed());
        ProgramFolder folder;
        Main main(new SerialRadioNet, folder.path(), NORVALE_EXAMPLES_DIR "/demo.nvl");
        auto w = [&main]<typename T = QWidget>(const char *name) {
            return main.findChild<T *>(QLatin1String(name));
        };
        const auto leave = [](QWidget *widget) {
            QFocusEvent event(QEvent::FocusOut, Qt::TabFocusReason);
            QCoreApplication::sendEvent(widget, &event);
        };
        const auto panel2 = [&] { return w.operator()<QLabel>("StatusPanel2")->text(); };
        auto *mfg1 = w.operator()<QTableWidget>("MFG1");
        w.operator()<QComboBox>("C_port")->setCurrentText(device);
        leave(w("C_port"));
        QCOMPARE(w.operator()<QLabel>("NetworkLabel")->text(), "Serial line " + device);
        w.operator()<QTabWidget>("Onglet1")->setCurrentIndex(1);
        QCOMPARE(w.operator()<QLabel>("StatusPanel1")->text(), device + " Open ");

        w.operator()<QAbstractButton>("b_Alive")->click();
        QTRY_VERIFY(!mfg1->item(4, 1)->text().isEmpty()); // the read-back has gone through
        QCOMPARE(panel2(), QStringLiteral("Ready"));
        QCOMPARE(mfg1->item(0, 1)->text(), "1");
        QCOMPARE(mfg1->item(3, 1)->text(), "2.5");
        w.operator()<QLineEdit>("Text3")->setText("12");
        w.operator()<QAbstractButton>("b_Config")->click();
        QTRY_COMPARE(mfg1->item(0, 1)->text(), "12"); // detected under its new Sat ID

        w.operator()<QTabWidget>("Onglet1")->setCurrentIndex(2);
        w.operator()<QAbstractButton>("b_Debut_test")->click();
        auto *mfg2 = w.operator()<QTableWidget>("MFG2");
        for (int row = 1; row <= 3; ++row)
            QTRY_COMPARE(mfg2->item(row, 1)->text(), "     OK");
        QTRY_VERIFY(panel2().startsWith("No answer from satellite 4 Error n.6"));
        netsim.terminate();
        QTRY_VERIFY2(panel2().contains("lost") && panel2().endsWith("Error n.5"),
                     qPrintable(panel2()));
        QCOMPARE(w.operator()<QLabel>("StatusPanel1")->text(), "Com port inactive");
        w.operator()<QTabWidget>("Onglet1")->setCurrentIndex(0); // and the window goes on
        QCOMPARE(w.operator()<QTabWidget>("Onglet1")->currentIndex(), 0);
    }
};

QTEST_MAIN(TestSerialRadioNet)
#include "tst_serialradionet.moc"
