#include "config/ConfigFile.h"
#include "config/Globale.h"
#include "config/IniFile.h"
#include "platform/ProfileString.h"
#include "support/FilesSupport.h"

#include <QDir>

namespace {

const QStringList goldenSatellites{"5/1/1", "7/0/0", "1999/1/1"};

void addSatellite(RadioNetControl &net, qint16 id, qint16 interfaceCode = 1, qint16 enabled = 1) {
    const SatellitePtr s = net.Satellites().Add(id);
    s->setInterface(interfaceCode);
    s->setEnabled(enabled);
}

// The golden file's configuration: the simulator's link defaults, terminals 10 to
// 12 and three satellites.
Globale likeGolden(RadioNetControl &net) {
    addSatellite(net, 5);
    addSatellite(net, 7, 0, 0);
    addSatellite(net, 1999);
    Globale g;
    g.FirstDevice = 10;
    g.LastDevice = 12;
    return g;
}

} // namespace

class tst_ConfigFile : public QObject {
    Q_OBJECT

private slots:
    void writtenConfigurationIsByteExactAndRoundTrips() {
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("three.nvl"));
        SimulatedRadioNet net;
        const Globale g = likeGolden(net);
        QVERIFY(WriteConfigFile(path, net, g));
        QCOMPARE(dir.read("three.nvl"), goldenWith());

        SimulatedRadioNet loaded;
        loaded.setCommPort("COM9");
        loaded.setTimer(7);
        QVERIFY(ReadConfigFile(path, loaded));
        QCOMPARE(loaded.CommPort(), "COM1");
        QCOMPARE(loaded.BaudRate(), "38400");
        QCOMPARE(loaded.Timer(), qint16(100));
        QCOMPARE(satellitesOf(loaded), goldenSatellites);
        QCOMPARE(terminalsOf(loaded), QList<qint16>({10, 11, 12}));
        // Empty lists are not cleared; the thirteen padding sections create nothing.
        QCOMPARE(loaded.callLog(),
                 QStringList({"SetNotification true 1 10", "Devices.Add 10", "Devices.Add 11",
                              "Devices.Add 12", "Satellites.Add 5", "Satellites.Add 7",
                              "Satellites.Add 1999"}));

        // Saving what was read gives the same bytes; the previous version is the backup.
        QVERIFY(WriteConfigFile(path, loaded, g));
        QCOMPARE(dir.read("three.nvl"), goldenWith());
        QCOMPARE(dir.read("three.bak"), goldenWith());
    }

    // Every row looks up "Key" in section "General".
    void readIniKey_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("found");
        QTest::addColumn<QString>("value");
        auto row = [](const char *name, const QByteArray &content, bool found,
                      const char *value = "") {
            QTest::newRow(name) << content << found << QString::fromUtf8(value);
        };
        row("LF, no last line end", "[General]\nX=0\nKey=1", true, "1");
        row("CR, lines without =", "[General]\r\r; note\rKey=1\r", true, "1");
        row("any case", "[gENERAL]\r\nkEY=1\r\n", true, "1");
        row("blank inside header", "[ General]\r\nKey=1\r\n", false);
        row("blank before =", "[General]\r\nKey =1\r\n", false);
        row("value not trimmed", "[General]\r\nKey= 1 =2 \r\n", true, " 1 =2 ");
        row("next section ends it", "[General]\r\n[Devices]\r\nKey=1\r\n", false);
        row("first section only", "[General]\r\nA=1\r\n[B]\r\n[General]\r\nKey=1\r\n", false);
        row("first key wins", "[General]\r\nKey=1\r\nKEY=2\r\n", true, "1");
        row("byte order mark", "\xEF\xBB\xBF[General]\r\nKey=1\r\n", true, "1");
        row("Latin-1", "[General]\r\nKey=R\xE9seau\r\n", true, "Réseau");
        row("binary", QByteArray("\x00\xff[\x01=\x02\n\x80\x80", 10), false);
    }
    void readIniKey() {
        QFETCH(QByteArray, content);
        QFETCH(bool, found);
        QFETCH(QString, value);
        ProgramFolder dir;
        dir.write("t.ini", content);
        QString read = QStringLiteral("stale");
        QCOMPARE(ReadIniKey("General", "Key", read, dir.file("t.ini")), found);
        QCOMPARE(read, value);
    }

    // Every row writes key "x" of section "A".
    void profileWriterEditsExistingFiles_data() {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QByteArray>("after");
        auto row = [](const char *name, const QByteArray &before, const char *value,
                      const QByteArray &after) {
            QTest::newRow(name) << before << QString::fromUtf8(value) << after;
        };
        row("in place, name kept", "[a]\r\nX=1\r\ny=2\r\n", "2", "[a]\r\nX=2\r\ny=2\r\n");
        row("after the last key line", "[A]\r\ny=1\r\n\r\n; end\r\n[B]\r\n", "2",
            "[A]\r\ny=1\r\nx=2\r\n\r\n; end\r\n[B]\r\n");
        row("section without keys", "[A]\r\n\r\n[B]\r\n", "", "[A]\r\nx=\r\n\r\n[B]\r\n");
        row("new section at the end, CR LF", "; kept\n[B]\ry=1", "2",
            "; kept\r\n[B]\r\ny=1\r\n[A]\r\nx=2\r\n");
        row("first of repeated sections", "[A]\r\n[B]\r\n[A]\r\nx=1\r\n", "2",
            "[A]\r\nx=2\r\n[B]\r\n[A]\r\nx=1\r\n");
        row("other bytes kept", "[A]\r\ny=R\xE9seau\r\n", "Réseau",
            "[A]\r\ny=R\xE9seau\r\nx=R\xC3\xA9seau\r\n");
    }
    void profileWriterEditsExistingFiles() {
        QFETCH(QByteArray, before);
        QFETCH(QString, value);
        QFETCH(QByteArray, after);
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("t.ini"));
        dir.write("t.ini", before);
        QVERIFY(WritePrivateProfileString("A", "x", value, path));
        QCOMPARE(dir.read("t.ini"), after);
        QString read;
        QVERIFY(ReadIniKey("A", "x", read, path));
        QCOMPARE(read, value);
    }

    void profileWriterRefusesWhatIsNotOneLine() {
        ProgramFolder dir;
        dir.write("t.ini", "[A]\r\nx=1\r\n");
        QVERIFY(!WritePrivateProfileString("A", "x", "two\r\nlines", dir.file("t.ini")));
        QVERIFY(!WritePrivateProfileString("A", "x=y", "1", dir.file("t.ini")));
        QCOMPARE(dir.read("t.ini"), "[A]\r\nx=1\r\n");
    }

    void readerKeepsItsQuirks() {
        ProgramFolder dir;
        dir.write("q.nvl", goldenWith({{"Timer=100", "Timer=50"},
                                       {"TimeOut=100", "TimeOut=20.5s"},
                                       {"SendToPc=1", "SendToPc=01"},
                                       {"Enabled=1\r\nSynchro", "Enabled=true\r\nSynchro"},
                                       {"FirstDevice=10", "FirstDevice=13"},
                                       {"SatId=7\r\n", "SatId=5\r\n"}}));
        SimulatedRadioNet net;
        QVERIFY(ReadConfigFile(dir.file("q.nvl"), net));
        QCOMPARE(net.TimeOut(), qint16(20)); // 20.5 rounds to the even 20
        QCOMPARE(net.Timer(), qint16(20));   // the time-out again, never "Timer"
        QVERIFY(!net.Enabled());
        QCOMPARE(net.callLog().value(0), "SetNotification false 1 10");
        // A range upside down declares no terminal.
        QCOMPARE(terminalsOf(net), QList<qint16>());
        // The list is keyed by SatId: the second 5 is added with the control's
        // defaults (0/0) and the first takes its values.
        QCOMPARE(satellitesOf(net), QStringList({"5/0/0", "5/0/0", "1999/1/1"}));

        // The program's own notification copy is what the next save writes.
        QVERIFY(WriteConfigFile(dir.file("other.nvl"), net, Globale()));
        QCOMPARE(keyOf(dir.file("other.nvl"), "General", "SendToPc"), "1");
    }

    // The speed is the leading number, in its shortest plain decimal text.
    void baudRateIsReadAsANumber_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("baudRate");
        QTest::newRow("trailing text and zero") << QByteArray("+9600.50baud") << "9600.5";
        QTest::newRow("no exponent form") << QByteArray("1000000") << "1000000";
        QTest::newRow("minus zero") << QByteArray("-0") << "0";
        QTest::newRow("no number") << QByteArray("fast") << "0";
    }
    void baudRateIsReadAsANumber() {
        QFETCH(QByteArray, text);
        QFETCH(QString, baudRate);
        ProgramFolder dir;
        dir.write("b.nvl", goldenWith({{"BaudRate=38400", "BaudRate=" + text}}));
        SimulatedRadioNet net;
        QVERIFY(ReadConfigFile(dir.file("b.nvl"), net));
        QCOMPARE(net.BaudRate(), baudRate);
    }

    void readerFailurePath_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("commPort"); // applied before the failure, kept
        QTest::newRow("Satellite16 without Enabled")
            << goldenWith().chopped(int(sizeof("Enabled=0\r\n") - 1)) << "COM1";
        QTest::newRow("empty TimeOut") << goldenWith({{"TimeOut=100", "TimeOut="}}) << "COM1";
        QTest::newRow("SatId beyond 16 bits")
            << goldenWith({{"SatId=7\r\n", "SatId=40000\r\n"}}) << "COM1";
        QTest::newRow("Synchro beyond 32 bits")
            << goldenWith({{"Synchro=1", "Synchro=3000000000"}}) << "COM1";
        QTest::newRow("binary") << QByteArray(4096, '\xA5') << "COM4";
        QTest::newRow("too big for a file of ours")
            << goldenWith() + QByteArray(MaxIniFileSize, 'x') << "COM4";
        QTest::newRow("missing") << QByteArray() << "COM4";
    }
    void readerFailurePath() {
        QFETCH(QByteArray, content);
        QFETCH(QString, commPort);
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("bad.nvl"));
        if (!content.isNull())
            dir.write("bad.nvl", content);
        SimulatedRadioNet net;
        net.setCommPort("COM4");
        addSatellite(net, 3);
        net.Devices().Add(4);
        net.clearCallLog();
        QVERIFY(!ReadConfigFile(path, net));
        QCOMPARE(net.CommPort(), commPort);
        QCOMPARE(net.Satellites().Count(), 0);
        QCOMPARE(net.Devices().Count(), 0);
        // The failure path empties the satellites first, then the terminals.
        QStringList log = net.callLog();
        QCOMPARE(log.mid(log.size() - 2), QStringList({"Satellites.Clear", "Devices.Clear"}));

        // A list is cleared only when it holds something: starting empty, only what
        // the reader added before failing is cleared.
        net.clearCallLog();
        QVERIFY(!ReadConfigFile(path, net));
        log = net.callLog();
        QCOMPARE(log.contains("Satellites.Clear"), !log.filter("Satellites.Add").isEmpty());
        QCOMPARE(log.contains("Devices.Clear"), !log.filter("Devices.Add").isEmpty());
    }

    void savingKeepsThePreviousVersion() {
        ProgramFolder dir;
        QVERIFY2(!dir.path().contains(u'.'), "the scratch folder's path must hold no dot");
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("data.v2")));
        const QString path = dir.file(QStringLiteral("data.v2/net.nvl"));
        dir.write("data.v2/net.nvl", "first");
        dir.write("data.bak", "older");
        SimulatedRadioNet net;
        const Globale g = likeGolden(net);
        // The backup's name is cut at the first "." of the whole path.
        QVERIFY(WriteConfigFile(path, net, g));
        QCOMPARE(dir.read("data.bak"), "first");
        QCOMPARE(dir.read("data.v2/net.nvl"), goldenWith());

        // Nothing can be replaced: both versions stay, nothing half-written is left.
        const auto writable =
            QFile::WriteOwner | QFile::WriteUser | QFile::WriteGroup | QFile::WriteOther;
        for (const QString &locked :
             {path, dir.file("data.bak"), dir.file("data.v2"), dir.path()}) {
            const QFile::Permissions permissions = QFile::permissions(locked);
            QFile::setPermissions(locked, permissions & ~writable);
            const bool saved = WriteConfigFile(path, net, Globale());
            QFile::setPermissions(locked, permissions);
            QVERIFY2(!saved, qPrintable(locked));
        }
        QCOMPARE(dir.read("data.bak"), "first");
        QCOMPARE(dir.read("data.v2/net.nvl"), goldenWith());
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList({"data.bak"}));
        QCOMPARE(QDir(dir.file("data.v2")).entryList(QDir::Files), QStringList({"net.nvl"}));
        QVERIFY(!WriteConfigFile(dir.file("missing/net.nvl"), net, g));

        // A new file needs no backup, dot or not; an existing one without a dot
        // cannot have one and is left as it was.
        QVERIFY(WriteConfigFile(dir.file("nodot"), net, g));
        QCOMPARE(dir.read("nodot"), goldenWith());
        dir.write("nodot", "kept");
        QVERIFY(!WriteConfigFile(dir.file("nodot"), net, g));
        QCOMPARE(dir.read("nodot"), "kept");
        // A file that would be its own backup is kept as it is.
        dir.write("same.bak", "same");
        QVERIFY(!WriteConfigFile(dir.file("same.bak"), net, g));
        QCOMPARE(dir.read("same.bak"), "same");
    }

    void seventeenSatellitesAreWrittenButReportedAsFailed() {
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("full.nvl"));
        SimulatedRadioNet net;
        for (qint16 id = 1; id <= 17; ++id)
            addSatellite(net, id);
        QVERIFY(!WriteConfigFile(path, net, Globale()));
        QCOMPARE(keyOf(path, "Satellite17", "SatId"), "17");
        // The reader stops at the sixteenth section.
        SimulatedRadioNet loaded;
        QVERIFY(ReadConfigFile(path, loaded));
        QCOMPARE(loaded.Satellites().Count(), 16);
    }
};

QTEST_GUILESS_MAIN(tst_ConfigFile)
#include "tst_configfile.moc"
