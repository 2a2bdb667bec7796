#include "config/ConfigFile.h"
#include "config/Globale.h"
#include "config/IniFile.h"
#include "platform/ProfileString.h"
#include "support/MainHarness.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QSignalBlocker>

namespace {

// The golden file's satellites and terminal range, or the given "SatId/Interface/
// Enabled" ones, in a control with the simulator's link defaults.
Globale configure(RadioNetControl &net,
                  const QStringList &satellites = {"5/1/1", "7/0/0", "1999/1/1"}) {
    for (const QString &satellite : satellites) {
        const QStringList f = satellite.split(u'/');
        const SatellitePtr s = net.Satellites().Add(f[0].toShort());
        s->setInterface(f[1].toShort());
        s->setEnabled(f[2].toShort());
    }
    Globale g;
    g.FirstDevice = 10;
    g.LastDevice = 12;
    return g;
}

// What a control holds: its link parameters, the notification it was last given,
// its terminals and its satellites.
QString held(SimulatedRadioNet &net) {
    return QStringLiteral("%1 %2 %3 %4 %5 %6 %7 | %8 | %9 | %10")
        .arg(net.CommPort(), net.BaudRate())
        .arg(net.Enabled())
        .arg(net.Synchro())
        .arg(net.TimeOut())
        .arg(net.Timer())
        .arg(net.Mode())
        .arg(net.callLog().filter("SetNotification").join(u' ').mid(16),
             terminalsOf(net).join(u' '), satellitesOf(net).join(u' '));
}

QStringList folderEntries(const ProgramFolder &folder) {
    return QDir(folder.path()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
}

} // namespace

class tst_Config : public QObject {
    Q_OBJECT

private slots:
    void writtenConfigurationIsByteExactAndRoundTrips() {
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("three.nvl"));
        SimulatedRadioNet net;
        const Globale g = configure(net);
        QVERIFY(WriteConfigFile(path, net, g));
        QCOMPARE(dir.read("three.nvl"), goldenWith());

        // Read back, only the lists that hold something are cleared and the padding
        // sections create nothing; the notification read goes to the control only,
        // and saving writes the program's own copy. The previous version is the backup.
        dir.write("three.nvl", goldenWith({{"SendToPc=1", "SendToPc=0"}}));
        SimulatedRadioNet loaded;
        QVERIFY(ReadConfigFile(path, loaded));
        QCOMPARE(loaded.callLog(),
                 QStringList({"SetNotification false 1 10", "Devices.Add 10", "Devices.Add 11",
                              "Devices.Add 12", "Satellites.Add 5", "Satellites.Add 7",
                              "Satellites.Add 1999"}));
        QVERIFY(WriteConfigFile(path, loaded, g));
        QCOMPARE(dir.read("three.nvl"), goldenWith());
        QCOMPARE(dir.read("three.bak"), goldenWith({{"SendToPc=1", "SendToPc=0"}}));
    }

    // The golden file, edited, read into a control that held other link values,
    // satellite 3 and terminal 4. A failed read keeps the values it had applied and
    // empties both lists, the satellites first.
    void read_data() {
        QTest::addColumn<QByteArray>("file"); // null: no file
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("held");
        const auto row = [](const char *name, const QByteArray &file, bool ok, const char *held) {
            QTest::newRow(name) << file << ok << QString::fromLatin1(held);
        };
        const auto golden = [](const QByteArray &from, const QByteArray &to) {
            return goldenWith({{from, to}});
        };
        row("golden", goldenWith(), true,
            "COM1 38400 1 1 100 100 0 | true 1 10 | 10 11 12 | 5/1/1 7/0/0 1999/1/1");
        // The timer takes the time-out, never "Timer"; 20.5 rounds to the even 20; only
        // "1" is true; the speed is the leading number in its shortest decimal text; a
        // range upside down declares nothing; the list is keyed by SatId: the second 5
        // is added with the control's defaults and the first takes its values.
        row("quirks",
            goldenWith({{"Timer=100", "Timer=50"},
                        {"TimeOut=100", "TimeOut=20.5s"},
                        {"SendToPc=1", "SendToPc=01"},
                        {"Enabled=1\r\nSynchro", "Enabled=true\r\nSynchro"},
                        {"=38400", "=+9600.50baud"},
                        {"FirstDevice=10", "FirstDevice=13"},
                        {"SatId=7\r\n", "SatId=5\r\n"}}),
            true, "COM1 9600.5 0 1 20 20 0 | false 1 10 |  | 5/0/0 5/0/0 1999/1/1");
        row("every section unused",
            goldenWith({{"=38400", "=1000000"},
                        {"SatId=5\r\n", "SatId=9999\r\n"},
                        {"SatId=7\r\n", "SatId=9999\r\n"},
                        {"SatId=1999\r\n", "SatId=9999\r\n"}}),
            true, "COM1 1000000 1 1 100 100 0 | true 1 10 | 10 11 12 | ");
        row("Satellite16 without Enabled",
            golden("=38400", "=-0").chopped(int(sizeof("Enabled=0\r\n") - 1)), false,
            "COM1 0 1 1 100 100 0 | true 1 10 |  | ");
        row("empty TimeOut", goldenWith({{"=38400", "=fast"}, {"TimeOut=100", "TimeOut="}}), false,
            "COM1 0 1 1 9 9 9 |  |  | ");
        row("SatId beyond 16 bits", golden("SatId=7\r\n", "SatId=40000\r\n"), false,
            "COM1 38400 1 1 100 100 0 | true 1 10 |  | ");
        row("Synchro beyond 32 bits", golden("Synchro=1", "Synchro=3000000000"), false,
            "COM1 38400 1 9 9 9 9 |  |  | ");
        row("missing", QByteArray(), false, "COM4 9 0 9 9 9 9 |  |  | ");
    }

    void read() {
        QFETCH(QByteArray, file);
        QFETCH(bool, ok);
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("t.nvl"));
        if (!file.isNull())
            dir.write("t.nvl", file);
        SimulatedRadioNet net;
        net.setCommPort("COM4");
        net.setBaudRate("9");
        net.setEnabled(false);
        net.setSynchro(9);
        for (auto set : {&SimulatedRadioNet::setTimeOut, &SimulatedRadioNet::setTimer,
                         &SimulatedRadioNet::setMode})
            (net.*set)(9);
        net.Satellites().Add(3);
        net.Devices().Add(4);
        net.clearCallLog();
        QCOMPARE(ReadConfigFile(path, net), ok);
        QTEST(held(net), "held");
        if (ok)
            return;
        QCOMPARE(net.callLog().mid(net.callLog().size() - 2),
                 QStringList({"Satellites.Clear", "Devices.Clear"}));
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
        row("blank after header", "[General] \r\nKey=1\r\n", false);
        row("blank before =", "[General]\r\nKey =1\r\n", false);
        row("value not trimmed", "[General]\r\nKey= 1 =2 \r\n", true, " 1 =2 ");
        row("next section ends it", "[General]\r\n[Devices]\r\nKey=1\r\n", false);
        row("first section only", "[General]\r\nA=1\r\n[B]\r\n[General]\r\nKey=1\r\n", false);
        row("byte order mark", "\xEF\xBB\xBF[General]\r\nKey=1\r\n", true, "1");
        row("Latin-1", "[General]\r\nKey=R\xE9seau\r\n", true, "Réseau");
    }

    void readIniKey() {
        QFETCH(QByteArray, content);
        ProgramFolder dir;
        dir.write("t.ini", content);
        QString read = QStringLiteral("stale");
        QTEST(ReadIniKey("General", "Key", read, dir.file("t.ini")), "found");
        QTEST(read, "value");
    }

    // Every row writes key "x" of section "A" and reads it back.
    void profileWriter_data() {
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
        row("new section at the end, CR LF", "; kept\n[B]\ry=1", "2",
            "; kept\r\n[B]\r\ny=1\r\n[A]\r\nx=2\r\n");
        row("first of repeated sections", "[A]\r\n[B]\r\n[A]\r\nx=1\r\n", "2",
            "[A]\r\nx=2\r\n[B]\r\n[A]\r\nx=1\r\n");
        row("other bytes kept", "[A]\r\ny=R\xE9seau\r\n", "Réseau",
            "[A]\r\ny=R\xE9seau\r\nx=R\xC3\xA9seau\r\n");
    }

    void profileWriter() {
        QFETCH(QByteArray, before);
        QFETCH(QString, value);
        ProgramFolder dir;
        dir.write("t.ini", before);
        QVERIFY(WritePrivateProfileString("A", "x", value, dir.file("t.ini")));
        QTEST(dir.read("t.ini"), "after");
        QCOMPARE(keyOf(dir.file("t.ini"), "A", "x"), value);
    }

    void savingKeepsThePreviousVersion() {
        ProgramFolder dir;
        QVERIFY2(!dir.path().contains(u'.'), "the scratch folder's path must hold no dot");
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("data.v2")));
        const QString path = dir.file(QStringLiteral("data.v2/net.nvl"));
        dir.write("data.v2/net.nvl", "first");
        dir.write("data.bak", "older");
        SimulatedRadioNet net;
        const Globale g = configure(net);
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

        // An existing file without a dot cannot have a backup and is left as it was,
        // as is a file that would be its own backup.
        for (const char *name : {"nodot", "same.bak"}) {
            dir.write(name, "kept");
            QVERIFY(!WriteConfigFile(dir.file(name), net, g));
            QCOMPARE(dir.read(name), "kept");
        }
    }

    // A list of 16 satellites or more is written whole but answers false; the reader
    // stops at the sixteenth section.
    void fullListsAreWrittenButReportedAsFailed() {
        ProgramFolder dir;
        const QString path = dir.file(QStringLiteral("full.nvl"));
        SimulatedRadioNet net;
        for (qint16 id = 1; id <= 17; ++id) {
            net.Satellites().Add(id);
            QCOMPARE(WriteConfigFile(path, net, Globale()), id < 16);
            QCOMPARE(keyOf(path, "Satellite16", "SatId"), id < 16 ? "9999" : "16");
        }
        QCOMPARE(keyOf(path, "Satellite17", "SatId"), "17");
        SimulatedRadioNet loaded;
        QVERIFY(ReadConfigFile(path, loaded));
        QCOMPARE(loaded.Satellites().Count(), 16);
    }

    void openShowsTheConfiguration() {
        MainHarness h;
        const QString file = h.folder().file("net.nvl");
        h.folder().write("net.nvl", goldenWith({{"CommPort=COM1", "CommPort=COM2"},
                                                {"TimeOut=100", "TimeOut=20"},
                                                {"FirstDevice=10", "FirstDevice=20"},
                                                {"LastDevice=12", "LastDevice=25"}}));
        h.act("b_Insert b_Insert MFG1=stale C_Interface=RS-485");
        const qsizetype messages = h.panel2History().size();
        QCOMPARE(h.open(file), QStringList({"open", "existing", "own", h.folder().path(),
                                            "File configuration (*.nvl)", "nvl"}));
        // The boxes' checks run as they are set and replace the message. The first
        // satellite is shown, at position 1, with the network view emptied.
        QCOMPARE(h.panel2History().mid(messages), QStringList({"File opened", "Ready"}));
        QCOMPARE(h.main().windowTitle(), "NORVALE Setup " + file);
        QCOMPARE(
            h.state({"m_enregistrer?", "recent", "sats", "C_port", "C_timeout", "Text1", "Text2",
                     "L_nbTPChiffre", "Text3", "C_Interface", "l_index", "MFG1"}),
            "true | " + file +
                ",,, | 5/1/1 7/0/0 1999/1/1 | COM2 | 20 | 20 | 25 | 6 | 5 | RS-232 | 1/3 | ,,,,,");

        // Every section unused, and a first terminal above the last: both lists empty.
        // The editor still gets a satellite, Sat ID 0, shown with the first defaults;
        // "0" is no terminal number: the first box empties itself, the count shows 0.
        // The range is in error: Save as is refused until a range is typed.
        h.folder().write("empty.nvl", goldenWith({{"SatId=5\r\n", "SatId=9999\r\n"},
                                                  {"SatId=7\r\n", "SatId=9999\r\n"},
                                                  {"SatId=1999\r\n", "SatId=9999\r\n"},
                                                  {"FirstDevice=10", "FirstDevice=13"}}));
        h.act("Check1=0 ~log");
        h.open(h.folder().file("empty.nvl"));
        QCOMPARE(h.state({"log", "Text3", "C_Interface", "Check1#", "Text1", "Text2",
                          "L_nbTPChiffre", "StatusPanel2"}),
                 "SetNotification true 1 10,Devices.Clear,Satellites.Clear,Satellites.Add 0 | 0 | "
                 "RS-232 | 2 |  |  | 0 | Invalid Terminal ");
        h.act("mFichier");
        QCOMPARE(h.state({"m_enregistersous?"}), "false");
    }

    void failedOpenKeepsWhatWasShown() {
        MainHarness h;
        const QString good = h.folder().file("good.nvl");
        h.folder().write("good.nvl", goldenWith());
        h.folder().write("bad.nvl", "[General]\r\nCommPort=COM3\r\n");
        h.open(good);
        h.open(h.folder().file("bad.nvl"));
        QCOMPARE(h.main().windowTitle(), "NORVALE Setup " + good);
        QCOMPARE(h.state({"StatusPanel2", "recent", "C_port", "m_enregistrer?", "sats"}),
                 "Error when opening | " + good + ",,, | COM1 | true | ");
        // What the failed read had cleared stays cleared: no satellite, no Save as.
        h.act("Text1=10 Text1 Text2=12 Text2 mFichier");
        QCOMPARE(h.state({"m_enregistersous?"}), "false");
    }

    void cancelLeavesEverything_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("panel2");
        QTest::newRow("Open") << "mOuvrir"
                              << "before";
        // Save as checks the fields before its dialog; their check writes its "Ready".
        QTest::newRow("Save as") << "m_enregistersous"
                                 << "Ready";
    }

    void cancelLeavesEverything() {
        QFETCH(QString, command);
        MainHarness h;
        const QString file = h.folder().file("net.nvl");
        h.folder().write("net.nvl", goldenWith());
        h.open(file);
        h.act("StatusPanel2=before ~log");
        const QByteArray settings = h.folder().read("Setup.ini");
        const QStringList entries = folderEntries(h.folder());
        {
            FileDialogAnswerer answer;
            h.act(command);
            QCOMPARE(answer.dialogsSeen(), 1);
        }
        QTEST(h.panel2(), "panel2");
        QCOMPARE(h.main().windowTitle(), "NORVALE Setup " + file);
        QCOMPARE(h.state({"recent", "log"}), file + ",,, | ");
        QCOMPARE(h.folder().read("Setup.ini"), settings);
        QCOMPARE(folderEntries(h.folder()), entries);
        // The current file is still the one opened: Save goes there.
        h.act("m_enregistrer");
        QCOMPARE(h.panel2(), "File saved");
        QVERIFY(QFile::exists(h.folder().file("net.bak")));
    }

    // The file becomes current through a failed open, which keeps its name; the
    // command runs with a range of 10 to 12 (9 for a range error) and one satellite
    // (sixteen for a full list).
    void save_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("situation");
        QTest::addColumn<QString>("panel2");
        auto row = [](const char *command, const char *situation, const char *panel2) {
            QTest::newRow(qPrintable(QStringLiteral("%1, %2").arg(command, situation)))
                << command << situation << QString::fromUtf8(panel2);
        };
        row("m_enregistrer", "saved, French", "Fichier enregistré");
        // Save as replaces an existing file (its dialog wants one), and then offers Save.
        row("m_enregistersous", "saved", "File saved");
        row("m_enregistrer", "range error, French", "Enregistrement impossible");
        row("m_enregistrer", "read-only, French", "Erreur lors de l'enregistrement");
        // The checks run first and leave their "Ready"; nothing else is shown.
        row("m_enregistrer", "no satellite", "Ready");
        row("m_enregistrer", "no file", "Ready");
        row("m_enregistersous", "range error", "Error when saving");
        // Unlike Save, Save as says so when there is no satellite.
        row("m_enregistersous", "no satellite", "Error when saving");
        // 99999 does not fit the control's 16-bit time-out: Save as ends silently, Save
        // has no handler of its own and the error is reported.
        row("m_enregistersous", "overflow", "Ready");
        row("m_enregistrer", "overflow", "Run-time error 6: Overflow");
        // A full list is written whole but reported as not saved.
        row("m_enregistrer", "full list", "Error when saving");
    }

    void save() {
        QFETCH(QString, command);
        QFETCH(QString, situation);
        MainHarness h;
        if (situation.endsWith(u"French"))
            h.act("m_French");
        const QString file = h.folder().file(QStringLiteral("câble ü ñ.nvl"));
        h.folder().write(QStringLiteral("câble ü ñ.nvl"), "previous version");
        if (situation != u"no file")
            h.open(file);
        if (situation != u"no satellite")
            h.act("b_ClearAll");
        h.act(situation.startsWith(u"range error") ? "Text1=10 Text1 Text2=9 Text2"
                                                   : "Text1=10 Text1 Text2=12 Text2");
        if (situation == u"overflow")
            h.act("C_timeout=99999");
        if (situation.startsWith(u"read-only"))
            QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
        for (int n = situation == u"full list" ? 1 : 16; n < 16; ++n)
            h.act("b_Insert");
        // Save is only offered after an open or a save; its handler is driven anyway.
        if (command == u"m_enregistrer")
            h.w<QAction>("m_enregistrer")->setEnabled(true);
        const QStringList entries = folderEntries(h.folder());
        const bool saved = situation.startsWith(u"saved");
        {
            FileDialogAnswerer answer({file});
            h.act(command);
            QCOMPARE(answer.dialogsSeen(), command == u"m_enregistersous" && saved);
            if (answer.dialogsSeen())
                QCOMPARE(answer.firstShown(),
                         QStringList({"save", "existing", "own", h.folder().path(),
                                      "File configuration (*.nvl)", "nvl"}));
        }
        QTEST(h.panel2(), "panel2");
        QCOMPARE(h.net().TimeOut(), qint16(100));
        QCOMPARE(h.main().windowTitle(), saved ? "NORVALE Setup " + file : "NORVALE Setup");
        QCOMPARE(h.state({"m_enregistrer?"}),
                 saved || command == u"m_enregistrer" ? "true" : "false");
        QCOMPARE(keyOf(file, "Satellite16", "SatId"), saved                       ? "9999"
                                                      : situation == u"full list" ? "15"
                                                                                  : "");
        if (saved)
            QCOMPARE(h.folder().read(QStringLiteral("câble ü ñ.bak")), "previous version");
        else if (situation != u"full list")
            QCOMPARE(folderEntries(h.folder()), entries);
    }

    void fileMenuChecksTheFieldsFirst() {
        // Typed but not left: the menu's checks commit it. The first box is checked
        // before the last: the refused first (0) is counted from, and the last check's
        // success allows saving.
        MainHarness h;
        h.act("Text2=12 Text2 Text1=0 Text1 C_port=COM4");
        h.w<QAction>("m_enregistersous")->setEnabled(false);
        h.act("mFichier");
        QCOMPARE(h.net().CommPort(), "COM4");
        QCOMPARE(h.state({"m_enregistersous?"}), "true");
        h.act("Text2=x mFichier");
        QCOMPARE(h.state({"m_enregistersous?"}), "false");
    }

    // The boxes typed (each text set at once, one Change) and left (the same check again),
    // from empty boxes and numbers at 0: Text1, Text2, the count and panel 2.
    void terminalRange_data() {
        QTest::addColumn<QString>("typing");
        QTest::addColumn<QString>("state");
        auto row = [](const char *name, const QString &typing, const QString &state) {
            QTest::newRow(name) << typing << state;
        };
        const QString error = "Error | Invalid Terminal ";
        row("leading zeros", "Text1=007 Text1 Text2=010 Text2", "007 | 010 | 4 | Ready");
        row("one terminal", "Text1=10 Text1 Text2=10 Text2", "10 | 10 | 1 | Ready");
        // The first box keeps a number above the last: the other end may follow.
        row("first above last", "Text1=5 Text1", "5 |  | " + error);
        row("first above last, French", "m_French Text1=5 Text1",
            "5 |  | Erreur | Terminal non valide");
        row("then the last", "Text1=5 Text1 Text2=7 Text2", "5 | 7 | 3 | Ready");
        row("first raised past last", "Text1=5 Text1 Text2=7 Text2 Text1=8 Text1",
            "8 | 7 | " + error);
        // A refused first box counts as 0: the last alone gives a count.
        row("last alone", "Text2=12 Text2", " | 12 | 13 | Ready");
        row("letter in first", "Text1=10 Text1 Text2=12 Text2 Text1=a Text1 Text2=12 Text2",
            " | 12 | 13 | Ready");
        // "0" empties the box and resets its number: 1 to (0) is then an error.
        row("0 in last", "Text1=10 Text1 Text2=12 Text2 Text2=0 Text2 Text1=1 Text1",
            "1 |  | " + error);
        for (const char *bad :
             {"_5", "+5", "1e3", "1\xEF\xBC\x95", "32768", "99999999999999999999"})
            row(bad,
                QStringLiteral("Text1=1 Text1 Text2=9 Text2 Text2=%1 Text2")
                    .arg(QString::fromUtf8(bad)),
                "1 |  | " + error);
        row("1 to 32767", "Text1=1 Text1 Text2=32767 Text2", "1 | 32767 | 32767 | Ready");
        // From a refused first (0) a count of 32767 is the most that fits 16 bits.
        row("count beyond 16 bits", "Text2=32767 Text2", " |  | " + error);
        row("count at 16 bits", "Text2=32766 Text2", " | 32766 | 32767 | Ready");
    }

    void terminalRange() {
        QFETCH(QString, typing);
        MainHarness h;
        h.act(typing);
        QTEST(h.state({"Text1", "Text2", "L_nbTPChiffre", "StatusPanel2"}), "state");
    }

    void leavingABoxChecksItAgain() {
        MainHarness h;
        h.act("Text1=10 Text1 Text2=12 Text2");
        h.w<QLabel>("StatusPanel2")->setText(QStringLiteral("other message"));
        {
            // Changed without their Change handlers: only leaving a box checks it.
            const QSignalBlocker quiet1(h.w<QLineEdit>("Text1")), quiet2(h.w<QLineEdit>("Text2"));
            h.w<QLineEdit>("Text1")->setText(QStringLiteral("11"));
            h.w<QLineEdit>("Text2")->setText(QStringLiteral("x"));
        }
        h.leave("Text1");
        QCOMPARE(h.shown({"L_nbTPChiffre", "StatusPanel2"}), QStringList({"2", "Ready"}));
        h.leave("Text2");
        QCOMPARE(h.shown({"Text2", "L_nbTPChiffre"}), QStringList({"", "Error"}));
    }

    // Typed key by key into a combo box ("#n": item n chosen from its list), then
    // left: the handler takes the text exactly as typed, neither completed nor
    // re-cased. The port as it stands; the time-out as its leading number, rounded half
    // to even, a number beyond 16 bits ending the handler with the run-time error; the
    // interface code 1 for exactly "RS-232" only.
    void comboBoxesCommitTheTypedText_data() {
        QTest::addColumn<QByteArray>("box");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("committed"); // CommPort, TimeOut or the Interface code
        auto row = [](const char *box, const char *typed, const char *committed) {
            QTest::newRow(qPrintable(QStringLiteral("%1 '%2'").arg(box, typed)))
                << QByteArray(box) << QString::fromLatin1(typed) << QString::fromLatin1(committed);
        };
        row("C_port", "C", "C");
        row("C_port", "com1", "com1");
        row("C_port", " /dev/ttyUSB0 ", " /dev/ttyUSB0 ");
        row("C_port", "#2", "COM3");
        row("C_Interface", "RS", "0");
        row("C_Interface", "rs-232", "0");
        row("C_Interface", "RS-232", "1");
        row("C_timeout", "2", "2");
        row("C_timeout", "5", "5");
        row("C_timeout", "", "0");
        row("C_timeout", "fast", "0");
        row("C_timeout", "20 s", "20");
        row("C_timeout", "1.5", "2");
        row("C_timeout", "-2.5x", "-2");
        row("C_timeout", "32766.5", "32766");
        row("C_timeout", "32767.5", "overflow");
        row("C_timeout", "99999999999999999999999", "overflow");
    }

    void comboBoxesCommitTheTypedText() {
        QFETCH(QByteArray, box);
        QFETCH(QString, typed);
        QFETCH(QString, committed);
        MainHarness h;
        h.net().Satellites().Item(1)->setInterface(2);
        auto *combo = h.w<QComboBox>(box);
        if (typed.startsWith(u'#')) {
            combo->showPopup();
            for (int i = 0; i < typed.mid(1).toInt(); ++i)
                QTest::keyClick(combo->view(), Qt::Key_Down);
            QTest::keyClick(combo->view(), Qt::Key_Return);
        } else {
            // Tabbed into, which selects the text shown, so that the first key replaces it.
            QFocusEvent in(QEvent::FocusIn, Qt::TabFocusReason);
            QCoreApplication::sendEvent(combo, &in);
            QTest::keyClick(combo, Qt::Key_Delete);
            QTest::keyClicks(combo, typed);
        }
        h.leave(box);
        QCOMPARE(combo->currentText(), typed.startsWith(u'#') ? committed : typed);
        const bool overflow = committed == u"overflow";
        QCOMPARE(QStringList({h.net().CommPort(), QString::number(h.net().TimeOut()),
                              QString::number(h.net().Satellites().Item(1)->Interface())})
                     .value(box == "C_port"      ? 0
                            : box == "C_timeout" ? 1
                                                 : 2),
                 overflow ? QStringLiteral("100") : committed);
        QCOMPARE(h.panel2(), overflow ? "Run-time error 6: Overflow" : "Ready");
    }
};

QTEST_MAIN(tst_Config)
#include "tst_config.moc"
