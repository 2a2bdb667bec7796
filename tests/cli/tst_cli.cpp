#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

// A configuration file: the link defaults with a time-out of 1 ms, terminals 1 to
// 20, these satellites ("SatId/Interface/Enabled") and padding; then each edit
// replaces a text. Sections start on lines 1, 13 and 16 + 4 (N - 1).
QByteArray nvl(const QStringList &satellites, const QList<QByteArrayList> &edits = {}) {
    QByteArray file =
        "[General]\r\nVersion=TALMOR NORVALE CONFIGURATION FILE\r\nCommPort=COM1\r\n"
        "BaudRate=38400\r\nEnabled=1\r\nSynchro=1\r\nTimeOut=1\r\nTimer=1\r\nmode=0\r\n"
        "SendToPc=1\r\nTimeNotify=1\r\nTimeGoingOn=10\r\n"
        "[Devices]\r\nFirstDevice=1\r\nLastDevice=20\r\n";
    for (int n = 1; n <= 16; ++n) {
        const QStringList s = satellites.value(n - 1, "9999/0/0").split(u'/');
        file += QStringLiteral("[Satellite%1]\r\nSatId=%2\r\nInterface=%3\r\nEnabled=%4\r\n")
                    .arg(n)
                    .arg(s[0], s[1], s[2])
                    .toUtf8();
    }
    for (const QByteArrayList &edit : edits)
        file.replace(edit[0], edit[1]);
    return file;
}

// A scenario: these satellites ("SatId/Interface/Enabled") on the air, heard in this
// order, answering at once.
QByteArray air(const QStringList &satellites) {
    QByteArray scenario = "[Air]\nAnswerDelayMs=0\n";
    for (qsizetype n = 0; n < satellites.size(); ++n) {
        const QStringList s = satellites[n].split(u'/');
        scenario += QStringLiteral("[Satellite%1]\nSatId=%2\nInterface=%3\nEnabled=%4\n")
                        .arg(QString::number(n + 1), s[0], s[1] == u"1" ? "RS-232" : "RS-485", s[2])
                        .toUtf8();
    }
    return scenario;
}

} // namespace

class tst_Cli : public QObject {
    Q_OBJECT

    QTemporaryDir dir_;
    QString out_, err_;

    QString path(const QString &name) const { return dir_.filePath(name); }
    void write(const QString &name, const QByteArray &bytes) const {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    // Starts norvale-cli in the scratch folder.
    void start(QProcess &cli, const QStringList &arguments) const {
        cli.setWorkingDirectory(dir_.path());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LANG", "C");
        cli.setProcessEnvironment(environment);
        cli.start(NORVALE_CLI, arguments);
    }
    // Its exit code, once it has ended.
    int finish(QProcess &cli) {
        cli.waitForFinished(120000);
        out_ = QString::fromUtf8(cli.readAllStandardOutput());
        err_ = QString::fromUtf8(cli.readAllStandardError());
        return cli.exitStatus() == QProcess::NormalExit ? cli.exitCode() : -1;
    }
    int run(const QStringList &arguments) {
        QProcess cli;
        start(cli, arguments);
        return finish(cli);
    }
    // Standard output and error with every run of blanks made one.
    QString said() const { return (out_ + err_).simplified(); }
    static void columns() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exit");
        QTest::addColumn<QString>("words");
    }
    static void row(const char *name, const QStringList &arguments, int exit, const char *words) {
        QTest::newRow(name) << arguments << exit << QString::fromUtf8(words);
    }
    void runRow() {
        QFETCH(QStringList, arguments);
        QFETCH(int, exit);
        QFETCH(QString, words);
        QCOMPARE(run(arguments), exit);
        QVERIFY2(said().contains(words), qPrintable(said()));
        if (exit == 2)
            QCOMPARE(err_.count(u'\n'), 1); // one line says why
    }

private slots:
    void initTestCase() {
        QVERIFY(dir_.isValid());
        write("good.nvl", nvl({"1/1/1", "2/0/1", "3/0/1"}));
        write("air.ini", air({"1/1/1", "2/0/1", "3/0/1"}));
    }

    // Every reason the reader refuses a file for, with its line.
    void checkSaysWhy_data() {
        columns();
        int n = 0;
        // content "/": the file is a folder; null: there is none.
        const auto check = [&](const char *name, const QByteArray &content, int exit,
                               const char *words, const char *language = "en") {
            const QString file = QStringLiteral("check%1.nvl").arg(++n);
            if (content == "/")
                QDir(dir_.path()).mkdir(file);
            else if (!content.isNull())
                write(file, content);
            row(name, {"check", file, "--lang", language}, exit, words);
        };
        const QByteArray good = nvl({"1/1/1", "2/0/1"});
        check("accepted", good, 0, ": accepted, 2 satellites");
        check("blanks around =", nvl({}, {{"TimeOut=1", "TimeOut = 1"}}), 1,
              ":7: [General] TimeOut is written TimeOut = 1: write TimeOut=value");
        check("in French", nvl({}, {{"TimeOut=1", "TimeOut = 1"}}), 1,
              ":7: [General] TimeOut est écrit TimeOut = 1 : écrire TimeOut=valeur", "fr");
        check("key in a repeated section", good.chopped(11) + "[Satellite16]\r\nEnabled=0\r\n", 1,
              ":80: [Satellite16] Enabled stands in a second [Satellite16] section, which is "
              "not read: move it into the first one, line 76");
        check("key missing", nvl({}, {{"CommPort=COM1\r\n", ""}}), 1,
              ":1: [General] has no key CommPort: write it CommPort=value");
        check("section missing", nvl({}, {{"[Satellite16]", "[Satellite17]"}}), 1,
              ": section [Satellite16] missing");
        check("section with blanks", nvl({}, {{"[Devices]", "[ Devices]"}}), 1,
              ":13: section [Devices] is written [ Devices]");
        check("empty value", nvl({}, {{"BaudRate=38400", "BaudRate="}}), 1,
              ":4: [General] BaudRate is empty");
        check("beyond 16 bits", nvl({"1/1/1", "40000/1/1"}), 1,
              ":21: [Satellite2] SatId is 40000: a number from -32768 to 32767 is expected");
        check("text saved as UTF-16",
              QByteArray(reinterpret_cast<const char *>(QString::fromUtf8(good).utf16()),
                         good.size() * 2),
              1, ": holds NUL bytes");
        check("too large", good + QByteArray(1 << 20, ';'), 1,
              "more than a configuration file can hold (1048576 at most)");
        check("no such file", QByteArray(), 1, ": no such file");
        check("a folder", "/", 1, ": not a regular file");
    }
    void checkSaysWhy() { runRow(); }

    // Files compared, networks surveyed and configured, and bad usage.
    void commands_data() {
        columns();
        write("same.nvl",
              nvl({"1/1/1", "2/2/7", "3/0/1"}, {{"BaudRate=38400", "BaudRate=38400.0 baud"}}));
        write("changed.nvl", nvl({"1/0/1", "7/0/1", "3/0/1"}, {{"TimeOut=1", "TimeOut=5"}}));
        write("fewer.nvl", nvl({"1/1/1", "2/0/1"}));
        write("refused.nvl", "[General]");
        row("same meaning", {"diff", "good.nvl", "same.nvl"}, 0, "Same network");
        row("differences", {"diff", "good.nvl", "changed.nvl"}, 1,
            "Time-out 1 ms 5 ms Satellite 1 Interface RS-232 RS-485 Satellite 2 Sat ID 2 7");
        row("a satellite less", {"diff", "good.nvl", "fewer.nvl"}, 1,
            "Satellite 3 Sat ID 3, RS-485, enabled yes -");
        row("diff of a refused file", {"diff", "good.nvl", "refused.nvl"}, 1,
            "refused.nvl:1: [General] has no key CommPort");

        // Surveys: the file's satellites, then the air's, heard in that order.
        const auto survey = [&](const char *name, const QStringList &file, const QStringList &onAir,
                                int exit, const char *words) {
            write(name + QStringLiteral(".nvl"), nvl(file));
            write(name + QStringLiteral(".ini"), air(onAir));
            row(name,
                {"survey", name + QStringLiteral(".nvl"), "--scenario",
                 name + QStringLiteral(".ini")},
                exit, words);
        };
        survey("all there", {"1/1/1", "2/0/1"}, {"2/0/1", "1/1/1"}, 0, "1 1 matches RS-232 yes");
        survey("missing", {"1/1/1", "4/1/1"}, {"1/1/1"}, 1,
               "2 4 missing RS-232 yes does not answer to its Sat ID");
        survey("extra, heard first", {"1/1/1"}, {"9/0/1", "1/1/1"}, 1, "- 9 unexpected RS-485 yes");
        survey("renamed", {"1/1/1", "4/0/1"}, {"5/0/1", "1/1/1"}, 1,
               "Sat ID 5 answers but is not in the file, and Sat ID 4 of the file does not answer");
        survey("duplicated", {"1/1/1", "2/0/1", "1/1/1"}, {"1/1/1", "2/0/1"}, 1,
               "3 1 duplicate Sat ID 1 is already at position 1 of the file");
        survey("differs", {"3/0/1"}, {"3/1/0"}, 1,
               "1 3 differs RS-232 no 2.5 28/30 QX NORVALE 3 interface RS-485 in the file, RS-232 "
               "on the air enabled: yes in the file, no on the air");

        // A Configure read back: lost radio messages (the seed picks which) leave the
        // satellite under its old Sat ID, and that is said, not confirmed.
        const QByteArray lossy = "[Air]\nAnswerDelayMs=0\nLossRate=0.5\n[Satellite1]\nSatId=3\n";
        write("arrives.ini", lossy + "[Air]\nSeed=7\n");
        write("lost.ini", lossy + "[Air]\nSeed=1\n");
        write("taken.ini", air({"3/1/1", "7/1/1"}));
        write("jumpered.ini", air({"3/1/1"}) + "InterfaceFixed=1\n");
        const QStringList configure{"configure",   "--sat",  "3",         "--new-id", "7",
                                    "--interface", "RS-485", "--timeout", "1",        "--scenario"};
        row("confirmed", configure + QStringList{"arrives.ini"}, 0,
            "Sat ID 3 is now Sat ID 7, RS-485, enabled: read back and confirmed");
        row("lost on the way", configure + QStringList{"lost.ini"}, 1,
            "Nothing answers to Sat ID 7 after the change: not confirmed");
        row("read back otherwise", configure + QStringList{"jumpered.ini"}, 1,
            "Sat ID 7 answers with RS-232, enabled, not RS-485, enabled as sent: not confirmed");
        row("new Sat ID taken", configure + QStringList{"taken.ini"}, 1,
            "Sat ID 7 already answers on the air: nothing sent");

        row("no command", {}, 2, "no command given");
        row("unknown command", {"frob"}, 2, "unknown command frob");
        row("no file", {"survey"}, 2, "survey needs a configuration file");
        row("one file too many", {"show", "good.nvl", "x.nvl"}, 2, "show does not take x.nvl");
        row("option of another command", {"survey", "good.nvl", "--json"}, 2,
            "--json belongs to show, not to survey");
        row("unknown option", {"check", "good.nvl", "--fast"}, 2, "unknown option --fast");
        row("no value", {"detect", "--sat"}, 2, "--sat needs a value");
        row("Sat ID required", {"read"}, 2, "read needs --sat");
        row("Sat ID range", {"read", "--sat", "2048"}, 2, "--sat must be a Sat ID from 0 to 2047");
        row("Sat ID not a number", {"read", "--sat", "3a"}, 2, "not 3a");
        row("new Sat ID range", {"configure", "--sat", "3", "--new-id", "2000"}, 2,
            "--new-id must be a Sat ID from 0 to 1999");
        row("interface", {"configure", "--sat", "3", "--new-id", "4", "--interface", "RS-422"}, 2,
            "--interface must be RS-232 or RS-485, not RS-422");
        row("baud", {"detect", "--baud", "0"}, 2, "--baud must be a positive number");
        row("rounds", {"test", "good.nvl", "--rounds", "0"}, 2, "--rounds must be");
        row("report format", {"survey", "good.nvl", "--report", "r.txt"}, 2,
            "--report must be a file ending in .html, .pdf or .json");
        row("language", {"check", "good.nvl", "--lang", "de"}, 2, "--lang must be en or fr");
        row("port not there", {"detect", "--port", "COM7"}, 3, "Link failure: Port COM7");
        row("help", {"help", "survey"}, 0, "Usage: norvale-cli survey FILE");
        row("help of a command", {"configure", "--help"}, 0, "--interface RS-232|RS-485");
    }
    void commands() { runRow(); }

    // Over a serial line to the emulator: a survey of the demo network, then a live
    // test that goes on until the far end goes away.
    void overASerialLine() {
        QProcess netsim;
        netsim.start(NORVALE_NETSIM_PATH,
                     {"--pty", "--verbose", "--scenario", NORVALE_EXAMPLES_DIR "/demo-air.ini"});
        QTRY_VERIFY(netsim.canReadLine());
        const QStringList serial{NORVALE_EXAMPLES_DIR "/demo.nvl", "--link", "serial", "--port",
                                 QString::fromLocal8Bit(netsim.readLine().trimmed())};
        QCOMPARE(run(QStringList{"survey"} + serial), 1);
        QVERIFY2(said().contains("3 3 matches RS-485 yes 3.1") &&
                     said().contains("4 4 missing RS-232 yes does not answer"),
                 qPrintable(said()));

        QProcess test;
        start(test, QStringList{"test", "--rounds", "1000000"} + serial);
        QByteArray served;
        // The survey's three status answers, then the live test's first.
        QTRY_VERIFY((served += netsim.readAllStandardOutput()).count("Status answer") > 3);
        netsim.terminate();
        QCOMPARE(finish(test), 3);
        QVERIFY2(err_.startsWith("Link failure: Serial line") && err_.contains("lost"),
                 qPrintable(err_));
    }

    void reportsAreWritten_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("survey, JSON") << QStringList{"survey", "good.nvl", "--report", "r.json"};
        QTest::newRow("test, PDF")
            << QStringList{"test", "good.nvl", "--rounds", "1", "--report", "r.pdf"};
    }
    void reportsAreWritten() {
        QFETCH(QStringList, arguments);
        const QString report = path(arguments.last());
        QVERIFY(!QFile::exists(report));
        QCOMPARE(run(arguments + QStringList{"--scenario", "air.ini"}), 0);
        QVERIFY2(QFileInfo(report).size() > 0, qPrintable(said()));
    }
};

QTEST_GUILESS_MAIN(tst_Cli)
#include "tst_cli.moc"
