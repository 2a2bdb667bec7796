#include "config/ConfigFile.h"
#include "config/Globale.h"
#include "config/IniFile.h"
#include "platform/ProfileString.h"
#include "radionet/SimulatedRadioNet.h"
#include "support/TestSupport.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {

struct SatelliteValues {
    qint16 id, interfaceCode;
    qint32 enabled;
};

void addSatellites(SimulatedRadioNet &net, const QList<SatelliteValues> &list) {
    for (const SatelliteValues &s : list) {
        const SatellitePtr sat = net.Satellites().Add(s.id);
        sat->setInterface(s.interfaceCode);
        sat->setEnabled(qint16(s.enabled));
    }
    net.clearCallLog();
}

// The configuration of three-satellites.nvl: the link defaults, terminals 10 to 12
// and three satellites.
Globale threeSatellites(SimulatedRadioNet &net) {
    net.setCommPort("COM1");
    net.setBaudRate("38400");
    net.setEnabled(true);
    net.setSynchro(1);
    net.setTimeOut(100);
    net.setTimer(100);
    net.setMode(0);
    addSatellites(net, {{5, 1, 1}, {7, 0, 0}, {1999, 1, 1}});
    Globale g;
    g.FirstDevice = 10;
    g.LastDevice = 12;
    return g;
}

QStringList satellitesOf(SimulatedRadioNet &net) {
    QStringList out;
    for (qint16 i = 1; i <= net.Satellites().Count(); ++i) {
        const SatellitePtr s = net.Satellites().Item(i);
        out << QStringLiteral("%1/%2/%3").arg(s->SatId()).arg(s->Interface()).arg(s->Enabled());
    }
    return out;
}

QList<qint16> devicesOf(SimulatedRadioNet &net) {
    QList<qint16> out;
    for (qint16 i = 1; i <= net.Devices().Count(); ++i)
        out << net.Devices().Item(i)->Number();
    return out;
}

bool writeBytes(const QString &path, const QByteArray &bytes) {
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
}

QByteArray readBytes(const QString &path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<unreadable>");
}

// The golden file with one line replaced ("" drops the line).
QByteArray goldenWith(const QByteArray &line, const QByteArray &replacement) {
    QByteArray bytes = referenceFile(QStringLiteral("three-satellites.nvl"));
    const qsizetype at = bytes.indexOf(line + "\r\n");
    if (at < 0)
        return QByteArray("<no such line>");
    bytes.replace(at, line.size() + 2, replacement.isEmpty() ? QByteArray() : replacement + "\r\n");
    return bytes;
}

// Removes every write permission of a file or folder for the length of a test.
class ReadOnly {
public:
    explicit ReadOnly(const QString &path)
        : path_(path)
        , saved_(QFile::permissions(path)) {
        QFile::setPermissions(path, saved_ & ~(QFileDevice::WriteOwner | QFileDevice::WriteUser |
                                               QFileDevice::WriteGroup | QFileDevice::WriteOther));
    }
    ~ReadOnly() { QFile::setPermissions(path_, saved_); }

private:
    QString path_;
    QFileDevice::Permissions saved_;
};

} // namespace

class tst_ConfigFile : public QObject {
    Q_OBJECT

private slots:
    void settingsCallsGiveReferenceBytes() {
        ProgramFolder dir;
        const QString ini = dir.file(QStringLiteral("Setup.ini"));
        const QString section = QStringLiteral("General");
        QVERIFY(WritePrivateProfileString(section, "Version", "TALMOR NORVALE CONFIGURATION FILE",
                                          ini));
        QVERIFY(WritePrivateProfileString(section, "Language", "US", ini));
        for (int i = 1; i <= 4; ++i)
            QVERIFY(WritePrivateProfileString(section, QStringLiteral("File%1").arg(i), "", ini));
        QCOMPARE(readBytes(ini), referenceFile(QStringLiteral("Setup.ini")));

        // Rewriting the same values leaves the bytes as they were.
        QVERIFY(WritePrivateProfileString(section, "language", "US", ini));
        QCOMPARE(readBytes(ini), referenceFile(QStringLiteral("Setup.ini")));
    }

    void writtenConfigurationIsByteExactAndRoundTrips() {
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("three.nvl"));
        SimulatedRadioNet net;
        const Globale g = threeSatellites(net);
        QVERIFY(WriteConfigFile(path, net, g));
        const QByteArray golden = referenceFile(QStringLiteral("three-satellites.nvl"));
        QCOMPARE(readBytes(path), golden);

        SimulatedRadioNet loaded;
        loaded.setCommPort("COM9");
        loaded.setTimer(7);
        QVERIFY(ReadConfigFile(path, loaded));
        QCOMPARE(loaded.CommPort(), QStringLiteral("COM1"));
        QCOMPARE(loaded.BaudRate(), QStringLiteral("38400"));
        QCOMPARE(loaded.Timer(), qint16(100));
        QCOMPARE(satellitesOf(loaded), QStringList({"5/1/1", "7/0/0", "1999/1/1"}));
        QCOMPARE(devicesOf(loaded), QList<qint16>({10, 11, 12}));
        // Empty lists are not cleared; the thirteen padding sections create nothing.
        QCOMPARE(loaded.callLog(),
                 QStringList({"SetNotification true 1 10", "Devices.Add 10", "Devices.Add 11",
                              "Devices.Add 12", "Satellites.Add 5", "Satellites.Add 7",
                              "Satellites.Add 1999"}));

        // Saving what was read gives the same bytes, and the previous version
        // survives as the backup.
        QVERIFY(WriteConfigFile(path, loaded, g));
        QCOMPARE(readBytes(path), golden);
        QCOMPARE(readBytes(dir.file(QStringLiteral("three.bak"))), golden);
    }

    void readIniKey_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("found");
        QTest::addColumn<QString>("value");
        const QByteArray plain = "[General]\r\nCommPort=COM1\r\n[Devices]\r\nFirstDevice=10\r\n";
        QTest::newRow("CRLF") << plain << "Devices"
                              << "FirstDevice" << true << "10";
        QByteArray lf = plain, cr = plain;
        QTest::newRow("LF") << lf.replace("\r\n", "\n") << "Devices"
                            << "FirstDevice" << true << "10";
        QTest::newRow("CR") << cr.replace("\r\n", "\r") << "Devices"
                            << "FirstDevice" << true << "10";
        QTest::newRow("no final line end") << QByteArray("[General]\nCommPort=COM1") << "General"
                                           << "CommPort" << true << "COM1";
        QTest::newRow("key any case") << plain << "GENERAL"
                                      << "commport" << true << "COM1";
        QTest::newRow("header any case") << QByteArray("[general]\r\nsatid=5\r\n") << "General"
                                         << "SatId" << true << "5";
        QTest::newRow("blank after header")
            << QByteArray("[General] \r\nCommPort=COM1\r\n") << "General"
            << "CommPort" << false << "";
        QTest::newRow("blank inside header")
            << QByteArray("[ General]\r\nCommPort=COM1\r\n") << "General"
            << "CommPort" << false << "";
        QTest::newRow("blank before key")
            << QByteArray("[General]\r\n CommPort=COM1\r\n") << "General"
            << "CommPort" << false << "";
        QTest::newRow("blanks around =")
            << QByteArray("[General]\r\nCommPort = COM1\r\n") << "General"
            << "CommPort" << false << "";
        QTest::newRow("value not trimmed")
            << QByteArray("[General]\r\nCommPort= COM1 =2 \r\n") << "General"
            << "CommPort" << true << " COM1 =2 ";
        QTest::newRow("empty value") << QByteArray("[General]\r\nFile1=\r\n") << "General"
                                     << "File1" << true << "";
        QTest::newRow("lines without = skipped")
            << QByteArray("[General]\r\n\r\n; note\r\nCommPort=COM1\r\n") << "General"
            << "CommPort" << true << "COM1";
        QTest::newRow("next section ends the search") << plain << "General"
                                                      << "FirstDevice" << false << "";
        QTest::newRow("key before the section")
            << QByteArray("CommPort=COM1\r\n[General]\r\n") << "General"
            << "CommPort" << false << "";
        QTest::newRow("first section only")
            << QByteArray("[General]\r\nA=1\r\n[Devices]\r\n[General]\r\nCommPort=COM1\r\n")
            << "General"
            << "CommPort" << false << "";
        QTest::newRow("first key wins") << QByteArray("[General]\r\nA=1\r\na=2\r\n") << "General"
                                        << "A" << true << "1";
        QTest::newRow("byte order mark")
            << QByteArray("\xEF\xBB\xBF[General]\r\nA=1\r\n") << "General"
            << "A" << true << "1";
        QTest::newRow("UTF-8 value")
            << QByteArray("[General]\r\nFile1=/d/R\xC3\xA9seau.nvl\r\n") << "General"
            << "File1" << true << "/d/Réseau.nvl";
        QTest::newRow("Latin-1 value")
            << QByteArray("[General]\r\nFile1=/d/R\xE9seau.nvl\r\n") << "General"
            << "File1" << true << "/d/Réseau.nvl";
        QTest::newRow("empty section name") << plain << ""
                                            << "CommPort" << false << "";
        QTest::newRow("empty key") << plain << "General"
                                   << "" << false << "";
        QTest::newRow("binary") << QByteArray("\x00\xff[\x01=\x02\n\x80\x80", 10) << "General"
                                << "A" << false << "";
    }
    void readIniKey() {
        QFETCH(QByteArray, content);
        QFETCH(QString, section);
        QFETCH(QString, key);
        QFETCH(bool, found);
        QFETCH(QString, value);
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("t.nvl"));
        QVERIFY(writeBytes(path, content));
        QString read = QStringLiteral("stale");
        QCOMPARE(ReadIniKey(section, key, read, path), found);
        QCOMPARE(read, value);
    }

    void readIniKeyRefusesWhatIsNotAFileOfOurs() {
        ProgramFolder dir;
        QString value = QStringLiteral("stale");
        QVERIFY(!ReadIniKey("General", "A", value, dir.file("missing.nvl")));
        QVERIFY(value.isEmpty());
        QVERIFY(!ReadIniKey("General", "A", value, dir.path())); // a folder
        const QString locked = dir.file(QStringLiteral("locked.nvl"));
        QVERIFY(writeBytes(locked, referenceFile(QStringLiteral("three-satellites.nvl"))));
        QFile::setPermissions(locked, {});
        if (QFile probe(locked); !probe.open(QIODevice::ReadOnly)) { // the super-user reads it
            QVERIFY(!ReadIniKey("General", "CommPort", value, locked));
            SimulatedRadioNet net;
            QVERIFY(!ReadConfigFile(locked, net));
        }
        const QString huge = dir.file(QStringLiteral("huge.nvl"));
        QByteArray bytes = "[General]\r\nA=1\r\n";
        bytes.append(10 * 1024 * 1024, 'x');
        QVERIFY(writeBytes(huge, bytes));
        QVERIFY(!ReadIniKey("General", "A", value, huge));
        SimulatedRadioNet net;
        QVERIFY(!ReadConfigFile(huge, net));
    }

    void isDigitString_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("digits");
        QTest::newRow("digits") << "0123456789" << true;
        QTest::newRow("empty") << "" << false;
        QTest::newRow("sign") << "-1" << false;
        QTest::newRow("blank") << "1 " << false;
        QTest::newRow("point") << "1.5" << false;
        QTest::newRow("letter last") << "12a" << false;
        QTest::newRow("full-width digit") << QString(QChar(0xFF11)) << false;
    }
    void isDigitString() {
        QFETCH(QString, text);
        QFETCH(bool, digits);
        QCOMPARE(IsDigitString(text), digits);
    }

    void profileWriterEditsExistingFiles_data() {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("value replaced in place, name kept")
            << QByteArray("[general]\r\nlanguage=FR\r\nFile1=a\r\n") << "General"
            << "Language"
            << "US" << QByteArray("[general]\r\nlanguage=US\r\nFile1=a\r\n");
        QTest::newRow("new key after the last key line")
            << QByteArray("[A]\r\nx=1\r\n\r\n; end of A\r\n[B]\r\ny=2\r\n") << "A"
            << "z"
            << "3" << QByteArray("[A]\r\nx=1\r\nz=3\r\n\r\n; end of A\r\n[B]\r\ny=2\r\n");
        QTest::newRow("new key in a section without keys")
            << QByteArray("[A]\r\n\r\n[B]\r\n") << "A"
            << "z"
            << "" << QByteArray("[A]\r\nz=\r\n\r\n[B]\r\n");
        QTest::newRow("new section at the end, line ends made CR LF")
            << QByteArray("; kept\n[A]\rx=1") << "B"
            << "y"
            << "2" << QByteArray("; kept\r\n[A]\r\nx=1\r\n[B]\r\ny=2\r\n");
        QTest::newRow("first of repeated sections")
            << QByteArray("[A]\r\n[B]\r\n[A]\r\nx=1\r\n") << "A"
            << "x"
            << "2" << QByteArray("[A]\r\nx=2\r\n[B]\r\n[A]\r\nx=1\r\n");
        QTest::newRow("header with blank is another section")
            << QByteArray("[A] \r\nx=1\r\n") << "A"
            << "x"
            << "2" << QByteArray("[A] \r\nx=1\r\n[A]\r\nx=2\r\n");
        QTest::newRow("other bytes kept")
            << QByteArray("[A]\r\nF=R\xE9seau\r\n") << "A"
            << "G"
            << "Réseau" << QByteArray("[A]\r\nF=R\xE9seau\r\nG=R\xC3\xA9seau\r\n");
    }
    void profileWriterEditsExistingFiles() {
        QFETCH(QByteArray, before);
        QFETCH(QString, section);
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(QByteArray, after);
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("t.ini"));
        QVERIFY(writeBytes(path, before));
        QVERIFY(WritePrivateProfileString(section, key, value, path));
        QCOMPARE(readBytes(path), after);
        QString read;
        QVERIFY(ReadIniKey(section, key, read, path));
        QCOMPARE(read, value);
    }

    void profileWriterFailuresKeepTheFile() {
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("t.ini"));
        const QByteArray before = "[A]\r\nx=1\r\n";
        QVERIFY(writeBytes(path, before));
        QVERIFY(!WritePrivateProfileString("A", "x", "two\r\nlines", path));
        QVERIFY(!WritePrivateProfileString("A", "x=y", "1", path));
        QVERIFY(!WritePrivateProfileString("A", "", "1", path));
        QVERIFY(!WritePrivateProfileString("A", "x", "1", dir.file("no/such/folder.ini")));
        {
            ReadOnly guard(path);
            QVERIFY(!WritePrivateProfileString("A", "x", "2", path));
        }
        {
            ReadOnly guard(dir.path());
            QVERIFY(!WritePrivateProfileString("A", "x", "2", path));
            QVERIFY(!WritePrivateProfileString("A", "x", "2", dir.file("new.ini")));
        }
        QCOMPARE(readBytes(path), before);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList({"t.ini"}));
    }

    void readerKeepsItsQuirks() {
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("q.nvl"));
        QByteArray bytes = goldenWith("Timer=100", "Timer=50");
        bytes = bytes.replace("TimeOut=100", "TimeOut=20.5s")
                    .replace("SendToPc=1", "SendToPc=01")
                    .replace("Enabled=1\r\nSynchro", "Enabled=true\r\nSynchro");
        QVERIFY(writeBytes(path, bytes));
        SimulatedRadioNet net;
        QVERIFY(ReadConfigFile(path, net));
        QCOMPARE(net.TimeOut(), qint16(20)); // 20.5 rounds to the even 20
        QCOMPARE(net.Timer(), qint16(20));   // the time-out again, never "Timer"
        QVERIFY(!net.Enabled());
        QCOMPARE(net.callLog().value(0), QStringLiteral("SetNotification false 1 10"));

        // The program's own notification copy is what the next save writes.
        Globale g;
        QVERIFY(WriteConfigFile(dir.file(QStringLiteral("other.nvl")), net, g));
        QString sendToPc;
        QVERIFY(ReadIniKey("General", "SendToPc", sendToPc, dir.file("other.nvl")));
        QCOMPARE(sendToPc, QStringLiteral("1"));
    }

    void baudRateIsReadAsANumber_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("baudRate");
        QTest::newRow("plain") << QByteArray("38400") << "38400";
        QTest::newRow("trailing text and zero") << QByteArray("+9600.50baud") << "9600.5";
        QTest::newRow("no exponent form") << QByteArray("1000000") << "1000000";
        QTest::newRow("point zero") << QByteArray("115200.0") << "115200";
        QTest::newRow("minus zero") << QByteArray("-0") << "0";
        QTest::newRow("no number") << QByteArray("fast") << "0";
    }
    void baudRateIsReadAsANumber() {
        QFETCH(QByteArray, text);
        QFETCH(QString, baudRate);
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("b.nvl"));
        QVERIFY(writeBytes(path, goldenWith("BaudRate=38400", "BaudRate=" + text)));
        SimulatedRadioNet net;
        QVERIFY(ReadConfigFile(path, net));
        QCOMPARE(net.BaudRate(), baudRate);
    }

    void readerContent_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("satellites");
        QTest::addColumn<QList<qint16>>("devices");
        QByteArray allUnused = referenceFile(QStringLiteral("three-satellites.nvl"));
        allUnused.replace("SatId=5\r\n", "SatId=9999\r\n")
            .replace("SatId=7\r\n", "SatId=9999\r\n")
            .replace("SatId=1999\r\n", "SatId=9999\r\n");
        QTest::newRow("every section unused")
            << allUnused << QStringList() << QList<qint16>{10, 11, 12};
        QTest::newRow("range upside down")
            << goldenWith("FirstDevice=10", "FirstDevice=5")
                   .replace("LastDevice=12", "LastDevice=3")
            << QStringList({"5/1/1", "7/0/0", "1999/1/1"}) << QList<qint16>();
        // The list is keyed by SatId: the second 5 is added with the control's
        // defaults (0/0) and the first takes its values.
        QTest::newRow("repeated SatId")
            << goldenWith("SatId=7", "SatId=5") << QStringList({"5/0/0", "5/0/0", "1999/1/1"})
            << QList<qint16>{10, 11, 12};
    }
    void readerContent() {
        QFETCH(QByteArray, content);
        QFETCH(QStringList, satellites);
        QFETCH(QList<qint16>, devices);
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("c.nvl"));
        QVERIFY(writeBytes(path, content));
        SimulatedRadioNet net;
        QVERIFY(ReadConfigFile(path, net));
        QCOMPARE(satellitesOf(net), satellites);
        QCOMPARE(devicesOf(net), devices);
    }

    void readerFailurePath_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("commPort"); // applied before the failure, kept
        const QByteArray golden = referenceFile(QStringLiteral("three-satellites.nvl"));
        QTest::newRow("Satellite16 without Enabled")
            << golden.left(golden.size() - int(sizeof("Enabled=0\r\n") - 1)) << "COM1";
        QTest::newRow("empty TimeOut") << goldenWith("TimeOut=100", "TimeOut=") << "COM1";
        QTest::newRow("SatId beyond 16 bits") << goldenWith("SatId=7", "SatId=40000") << "COM1";
        QTest::newRow("Synchro beyond 32 bits")
            << goldenWith("Synchro=1", "Synchro=3000000000") << "COM1";
        QTest::newRow("no CommPort") << goldenWith("CommPort=COM1", "") << "COM4";
        QTest::newRow("truncated") << golden.left(300) << "COM1";
        QTest::newRow("binary") << QByteArray(4096, '\xA5') << "COM4";
    }
    void readerFailurePath() {
        QFETCH(QByteArray, content);
        QFETCH(QString, commPort);
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("bad.nvl"));
        QVERIFY(writeBytes(path, content));
        SimulatedRadioNet net;
        net.setCommPort("COM4");
        addSatellites(net, {{3, 1, 1}});
        net.Devices().Add(4);
        net.clearCallLog();
        QVERIFY(!ReadConfigFile(path, net));
        QCOMPARE(net.CommPort(), commPort);
        QCOMPARE(net.Satellites().Count(), 0);
        QCOMPARE(net.Devices().Count(), 0);
        // The failure path empties the satellites first, then the terminals.
        QStringList log = net.callLog();
        QVERIFY(log.size() >= 2);
        QCOMPARE(log.mid(log.size() - 2), QStringList({"Satellites.Clear", "Devices.Clear"}));

        // A list is cleared only when it holds something: starting empty, only what
        // the reader added before failing is cleared.
        net.clearCallLog();
        QVERIFY(!ReadConfigFile(path, net));
        log = net.callLog();
        QCOMPARE(log.contains("Satellites.Clear"), !log.filter("Satellites.Add").isEmpty());
        QCOMPARE(log.contains("Devices.Clear"), !log.filter("Devices.Add").isEmpty());
        QVERIFY(!ReadConfigFile(dir.file("missing.nvl"), net));
    }

    void backupIsCutAtTheFirstDotOfThePath() {
        ProgramFolder dir;
        QVERIFY2(!dir.path().contains(u'.'), "the scratch folder's path must hold no dot");
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("data.v2")));
        const QString path = dir.file(QStringLiteral("data.v2/net.nvl"));
        const QString backup = dir.file(QStringLiteral("data.bak"));
        QVERIFY(writeBytes(path, "first"));
        QVERIFY(writeBytes(backup, "older"));
        SimulatedRadioNet net;
        const Globale g = threeSatellites(net);
        QVERIFY(WriteConfigFile(path, net, g));
        QCOMPARE(readBytes(backup), QByteArray("first"));
        QCOMPARE(readBytes(path), referenceFile(QStringLiteral("three-satellites.nvl")));
        QVERIFY(!QFile::exists(dir.file(QStringLiteral("data.v2/net.bak"))));

        // A name without a dot is refused before anything is written.
        QVERIFY(!WriteConfigFile(dir.file(QStringLiteral("nodot")), net, g));
        QVERIFY(!QFile::exists(dir.file(QStringLiteral("nodot"))));
        // A file that would be its own backup is kept as it is.
        QVERIFY(writeBytes(dir.file("same.bak"), "same"));
        QVERIFY(!WriteConfigFile(dir.file(QStringLiteral("same.bak")), net, g));
        QCOMPARE(readBytes(dir.file("same.bak")), QByteArray("same"));
    }

    void sixteenSatellitesOrMoreReportFailure_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("result");
        QTest::newRow("15") << 15 << true;
        QTest::newRow("16") << 16 << false;
        QTest::newRow("17") << 17 << false;
    }
    void sixteenSatellitesOrMoreReportFailure() {
        QFETCH(int, count);
        QFETCH(bool, result);
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("full.nvl"));
        SimulatedRadioNet net;
        QList<SatelliteValues> list;
        for (int i = 1; i <= count; ++i)
            list.append({qint16(100 + i), 1, 1});
        addSatellites(net, list);
        QVERIFY(WriteConfigFile(path, net, Globale()) == result);
        // The file is complete either way and reads back.
        SimulatedRadioNet loaded;
        QVERIFY(ReadConfigFile(path, loaded));
        QCOMPARE(loaded.Satellites().Count(), qMin(count, 16));
        QString id;
        QCOMPARE(ReadIniKey(QStringLiteral("Satellite%1").arg(count), "SatId", id, path), true);
        QCOMPARE(id, QString::number(100 + count));
        QVERIFY(
            !ReadIniKey(QStringLiteral("Satellite%1").arg(qMax(count, 16) + 1), "SatId", id, path));
    }

    void failedSaveKeepsThePreviousVersion() {
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("keep.nvl"));
        const QString backup = dir.file(QStringLiteral("keep.bak"));
        const QByteArray previous = referenceFile(QStringLiteral("three-satellites.nvl"));
        QVERIFY(writeBytes(path, previous));
        QVERIFY(writeBytes(backup, "older"));
        SimulatedRadioNet net;
        addSatellites(net, {{42, 1, 1}});
        {
            ReadOnly guard(path);
            QVERIFY(!WriteConfigFile(path, net, Globale()));
        }
        {
            ReadOnly guard(backup);
            QVERIFY(!WriteConfigFile(path, net, Globale()));
        }
        {
            ReadOnly guard(dir.path());
            QVERIFY(!WriteConfigFile(path, net, Globale()));
        }
        QCOMPARE(readBytes(path), previous);
        QCOMPARE(readBytes(backup), QByteArray("older"));
        QVERIFY(!WriteConfigFile(dir.file("missing/keep.nvl"), net, Globale()));

        SimulatedRadioNet loaded;
        QVERIFY(ReadConfigFile(path, loaded));
        QCOMPARE(satellitesOf(loaded), QStringList({"5/1/1", "7/0/0", "1999/1/1"}));
    }

    void nonAsciiPathsSurvive() {
        ProgramFolder dir;
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("Réseau Ünï")));
        const QString path = dir.file(QStringLiteral("Réseau Ünï/câble-東京.nvl"));
        SimulatedRadioNet net;
        const Globale g = threeSatellites(net);
        QVERIFY(WriteConfigFile(path, net, g));
        QVERIFY(WriteConfigFile(path, net, g));
        QVERIFY(QFile::exists(dir.file(QStringLiteral("Réseau Ünï/câble-東京.bak"))));
        SimulatedRadioNet loaded;
        QVERIFY(ReadConfigFile(path, loaded));
        QCOMPARE(satellitesOf(loaded), satellitesOf(net));

        const QString ini = dir.file(QStringLiteral("Setup.ini"));
        QVERIFY(WritePrivateProfileString("General", "File1", path, ini));
        QString value;
        QVERIFY(ReadIniKey("General", "File1", value, ini));
        QCOMPARE(value, path);
    }
};

QTEST_GUILESS_MAIN(tst_ConfigFile)
#include "tst_configfile.moc"
