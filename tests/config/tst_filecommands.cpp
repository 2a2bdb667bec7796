#include "support/FilesSupport.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QTableWidget>

namespace {

QString caption(const QString &file) {
    return QStringLiteral("NORVALE Setup ") + file;
}

QStringList folderEntries(const ProgramFolder &folder) {
    return QDir(folder.path()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
}

void typeRange(MainHarness &h, const char *first, const char *last) {
    h.typeAndLeave("Text1", QString::fromLatin1(first));
    h.typeAndLeave("Text2", QString::fromLatin1(last));
}

} // namespace

class tst_FileCommands : public QObject {
    Q_OBJECT

private slots:
    void openShowsTheConfiguration() {
        MainHarness h;
        const QString file = h.folder().file("net.nvl"), other = h.folder().file("other.nvl");
        h.folder().write("net.nvl", goldenWith({{"CommPort=COM1", "CommPort=COM2"},
                                                {"TimeOut=100", "TimeOut=20"}}));
        // The range already shown: the boxes do not change and "File opened" stays.
        typeRange(h, "10", "12");
        h.click("b_Insert");
        h.click("b_Insert");
        h.w<QTableWidget>("MFG1")->item(0, 1)->setText(QStringLiteral("stale"));
        h.w<QComboBox>("C_Interface")->setCurrentText(QStringLiteral("RS-485"));
        QStringList dialog;
        openThroughDialog(h, file, &dialog);
        QCOMPARE(dialog, fileDialogAsDesigned("open", h.folder()));
        QCOMPARE(h.panel2(), "File opened");
        QCOMPARE(h.main().windowTitle(), caption(file));
        QVERIFY(h.w<QAction>("m_enregistrer")->isEnabled());
        QCOMPARE(recentMenu(h), QStringList({file, "", "", ""}));
        QVERIFY(h.w<QAction>("mtiret3")->isVisible());
        QCOMPARE(satellitesOf(h.net()), QStringList({"5/1/1", "7/0/0", "1999/1/1"}));
        QCOMPARE(terminalsOf(h.net()), QList<qint16>({10, 11, 12}));
        // The first satellite is shown, at position 1, with the network view emptied.
        QCOMPARE(
            shown(h, {"C_port", "C_timeout", "L_nbTPChiffre", "Text3", "C_Interface", "l_index"}),
            QStringList({"COM2", "20", "3", "5", "RS-232", "1/3"}));
        QCOMPARE(h.w<QTableWidget>("MFG1")->item(0, 1)->text(), QString());

        // Another range: the boxes' checks run as they are set, the last says "Ready".
        h.folder().write("other.nvl", goldenWith({{"FirstDevice=10", "FirstDevice=20"},
                                                  {"LastDevice=12", "LastDevice=25"}}));
        openThroughDialog(h, other);
        QCOMPARE(h.panel2(), "Ready");
        QCOMPARE(shown(h, {"L_nbTPChiffre"}), QStringList({"6"}));
        QCOMPARE(h.main().windowTitle(), caption(other));
        QCOMPARE(recentMenu(h), QStringList({other, file, "", ""}));

        // Every section unused, and a first terminal above the last: both lists empty.
        h.w<QComboBox>("C_Interface")->setCurrentText(QStringLiteral("RS-485"));
        h.w<QCheckBox>("Check1")->setCheckState(Qt::Unchecked);
        h.folder().write("empty.nvl", goldenWith({{"SatId=5\r\n", "SatId=9999\r\n"},
                                                  {"SatId=7\r\n", "SatId=9999\r\n"},
                                                  {"SatId=1999\r\n", "SatId=9999\r\n"},
                                                  {"FirstDevice=10", "FirstDevice=13"}}));
        h.net().clearCallLog();
        openThroughDialog(h, h.folder().file("empty.nvl"));
        QCOMPARE(terminalsOf(h.net()), QList<qint16>());
        // The editor still gets a satellite, Sat ID 0, shown with the first defaults;
        // "0" is no terminal number: the first box empties itself, the count shows 0.
        QCOMPARE(h.net().callLog().filter("Satellites.Add"), QStringList({"Satellites.Add 0"}));
        QCOMPARE(shown(h, {"Text3", "C_Interface", "Text1", "Text2", "L_nbTPChiffre"}),
                 QStringList({"0", "RS-232", "", "", "0"}));
        QCOMPARE(h.w<QCheckBox>("Check1")->checkState(), Qt::Checked);
        QCOMPARE(h.panel2(), "Invalid Terminal ");
        // The range is in error: Save as is refused until a range is typed.
        dropFileMenu(h);
        QVERIFY(!h.w<QAction>("m_enregistersous")->isEnabled());
    }

    void failedOpenKeepsWhatWasShown() {
        MainHarness h;
        const QString good = h.folder().file("good.nvl");
        h.folder().write("good.nvl", goldenWith());
        openThroughDialog(h, good);
        h.folder().write("bad.nvl", "[General]\r\nCommPort=COM3\r\n");
        openThroughDialog(h, h.folder().file("bad.nvl"));
        QCOMPARE(h.panel2(), "Error when opening");
        QCOMPARE(h.main().windowTitle(), caption(good));
        QCOMPARE(recentMenu(h), QStringList({good, "", "", ""}));
        QCOMPARE(shown(h, {"C_port"}), QStringList({"COM1"}));
        QVERIFY(h.w<QAction>("m_enregistrer")->isEnabled());
        // What the failed read had cleared stays cleared: no satellite, no Save as.
        QCOMPARE(h.net().Satellites().Count() + h.net().Devices().Count(), 0);
        typeRange(h, "10", "12");
        dropFileMenu(h);
        QVERIFY(!h.w<QAction>("m_enregistersous")->isEnabled());
    }

    void cancelLeavesEverything_data() {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QString>("panel2");
        QTest::newRow("Open") << QByteArray("mOuvrir") << "before";
        // Save as checks the fields before its dialog; their check writes its "Ready".
        QTest::newRow("Save as") << QByteArray("m_enregistersous") << "Ready";
    }
    void cancelLeavesEverything() {
        QFETCH(QByteArray, command);
        QFETCH(QString, panel2);
        MainHarness h;
        const QString file = h.folder().file("net.nvl");
        h.folder().write("net.nvl", goldenWith());
        openThroughDialog(h, file);
        h.w<QLabel>("StatusPanel2")->setText(QStringLiteral("before"));
        const QByteArray settings = h.folder().read("Setup.ini");
        const QStringList entries = folderEntries(h.folder());
        h.net().clearCallLog();
        {
            FileDialogAnswerer answer;
            h.trigger(command.constData());
            QCOMPARE(answer.dialogsSeen(), 1);
        }
        QCOMPARE(h.panel2(), panel2);
        QCOMPARE(h.main().windowTitle(), caption(file));
        QCOMPARE(recentMenu(h), QStringList({file, "", "", ""}));
        QCOMPARE(h.folder().read("Setup.ini"), settings);
        QCOMPARE(folderEntries(h.folder()), entries);
        QCOMPARE(h.net().callLog(), QStringList());
        // The current file is still the one opened: Save goes there.
        h.trigger("m_enregistrer");
        QCOMPARE(h.panel2(), "File saved");
        QVERIFY(QFile::exists(backupOf(file)));
    }

    // The file becomes current through a failed open, which keeps its name; the
    // command runs with a range of 10 to 12 (9 for a range error).
    void save_data() {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QString>("situation");
        QTest::addColumn<bool>("french");
        QTest::addColumn<QString>("panel2");
        auto row = [](const char *name, const char *command, const char *situation, bool french,
                      const char *panel2) {
            QTest::newRow(name) << QByteArray(command) << QString::fromLatin1(situation) << french
                                << QString::fromUtf8(panel2);
        };
        row("saved", "m_enregistrer", "saved", true, "Fichier enregistré");
        row("range error", "m_enregistrer", "range error", true, "Enregistrement impossible");
        row("read-only", "m_enregistrer", "read-only", true, "Erreur lors de l'enregistrement");
        // The checks run first and leave their "Ready"; nothing else is shown.
        row("no satellite", "m_enregistrer", "no satellite", false, "Ready");
        row("no file", "m_enregistrer", "no file", false, "Ready");
        row("Save as, range error", "m_enregistersous", "range error", false, "Error when saving");
        // Unlike Save, Save as says so when there is no satellite.
        row("Save as, no satellite", "m_enregistersous", "no satellite", false,
            "Error when saving");
        // 99999 does not fit the control's 16-bit time-out: Save as ends silently, Save
        // has no handler of its own and the error is reported.
        row("Save as, overflow", "m_enregistersous", "overflow", false, "Ready");
        row("overflow", "m_enregistrer", "overflow", false, "Run-time error 6: Overflow");
    }
    void save() {
        QFETCH(QByteArray, command);
        QFETCH(QString, situation);
        QFETCH(bool, french);
        QFETCH(QString, panel2);
        MainHarness h;
        if (french)
            h.trigger("m_French");
        const QString file = h.folder().file("net.nvl");
        h.folder().write("net.nvl", "previous version");
        if (situation != u"no file")
            openThroughDialog(h, file);
        if (situation != u"no satellite")
            h.click("b_ClearAll");
        typeRange(h, "10", situation == u"range error" ? "9" : "12");
        if (situation == u"overflow")
            h.w<QComboBox>("C_timeout")->setCurrentText(QStringLiteral("99999"));
        if (situation == u"read-only")
            QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
        // Save is only offered after an open or a save; the handler is driven anyway.
        h.w<QAction>("m_enregistrer")->setEnabled(true);
        const QString title = h.main().windowTitle();
        const QStringList entries = folderEntries(h.folder());
        {
            FileDialogAnswerer answer; // Save as's dialog, were it shown, is cancelled
            h.trigger(command.constData());
            QCOMPARE(answer.dialogsSeen(), 0);
        }
        QCOMPARE(h.panel2(), panel2);
        QCOMPARE(h.net().TimeOut(), qint16(100));
        const bool written = situation == u"saved";
        QCOMPARE(h.main().windowTitle(), written ? caption(file) : title);
        QCOMPARE(QFile::exists(backupOf(file)), written);
        QCOMPARE(keyOf(file, "Satellite1", "SatId"), written ? "0" : "");
        if (!written)
            QCOMPARE(folderEntries(h.folder()), entries);
    }

    void aFullListIsWrittenButReportedAsFailed() {
        MainHarness h;
        typeRange(h, "1", "1");
        for (int n = 1; n < 16; ++n)
            h.click("b_Insert");
        const QString target = h.folder().file("full.nvl");
        h.folder().write("full.nvl", "previous version");
        {
            FileDialogAnswerer answer({target});
            h.trigger("m_enregistersous");
        }
        QCOMPARE(h.panel2(), "Error when saving");
        QCOMPARE(h.main().windowTitle(), "NORVALE Setup");
        QVERIFY(!h.w<QAction>("m_enregistrer")->isEnabled());
        // The list records the name before the write, whatever its outcome.
        QCOMPARE(recentMenu(h), QStringList({target, "", "", ""}));
        QCOMPARE(keyOf(target, "Satellite16", "SatId"), "15");
    }

    void fileMenuChecksTheFieldsFirst() {
        MainHarness h;
        h.typeAndLeave("Text2", QStringLiteral("12"));
        h.typeAndLeave("Text1", QStringLiteral("0"));
        // Typed but not left: the menu's checks commit it.
        h.w<QComboBox>("C_port")->setCurrentText(QStringLiteral("COM4"));
        h.w<QAction>("m_enregistersous")->setEnabled(false);
        dropFileMenu(h);
        QCOMPARE(h.net().CommPort(), "COM4");
        // The first box is checked before the last: the refused first (0) is counted
        // from, and the last check's success allows saving.
        QVERIFY(h.w<QAction>("m_enregistersous")->isEnabled());
        h.w<QLineEdit>("Text2")->setText(QStringLiteral("x"));
        dropFileMenu(h);
        QVERIFY(!h.w<QAction>("m_enregistersous")->isEnabled());
    }
};

QTEST_MAIN(tst_FileCommands)
#include "tst_filecommands.moc"
