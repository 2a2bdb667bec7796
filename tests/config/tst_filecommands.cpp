#include "config/IniFile.h"
#include "support/FilesSupport.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTableWidget>

namespace {

const ConfigSpec threeSatellites{"COM2", 20, 10, 12, {{5, 1, 1}, {7, 0, 0}, {1999, 1, 1}}};

QString caption(const QString &file) {
    return QStringLiteral("NORVALE Setup ") + file;
}

// A valid range and one satellite more than the start-up one (Sat IDs 0 and 1).
void makeSaveable(MainHarness &h) {
    h.typeAndLeave("Text1", QStringLiteral("10"));
    h.typeAndLeave("Text2", QStringLiteral("12"));
    h.click("b_Insert");
}

QStringList folderEntries(const ProgramFolder &folder) {
    return QDir(folder.path()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
}

void setReadOnly(const QString &file) {
    QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
}

// Opens a file of the program folder through File > Open.
void openThroughDialog(MainHarness &h, const QString &file) {
    FileDialogAnswerer answer({file});
    h.trigger("mOuvrir");
    QCOMPARE(answer.dialogsSeen(), 1);
}

// Save as onto a file of the program folder (which must exist).
void saveAsThroughDialog(MainHarness &h, const QString &file) {
    FileDialogAnswerer answer({file});
    h.trigger("m_enregistersous");
    QCOMPARE(answer.dialogsSeen(), 1);
}

QString keyOf(const QString &file, const char *section, const char *key) {
    QString value;
    ReadIniKey(QString::fromLatin1(section), QString::fromLatin1(key), value, file);
    return value;
}

} // namespace

class tst_FileCommands : public QObject {
    Q_OBJECT

private slots:
    void openShowsTheConfiguration() {
        MainHarness h;
        const QString file = h.folder().file("net.nvl");
        h.folder().write("net.nvl", configFileBytes(threeSatellites));
        // The range already shown: the boxes do not change and "File opened" stays.
        h.typeAndLeave("Text1", QStringLiteral("10"));
        h.typeAndLeave("Text2", QStringLiteral("12"));
        h.click("b_Insert");
        h.click("b_Insert");
        QCOMPARE(h.w<QLabel>("l_index")->text(), QStringLiteral("3/3"));
        h.w<QTableWidget>("MFG1")->item(0, 1)->setText(QStringLiteral("stale"));
        h.w<QComboBox>("C_Interface")->setCurrentText(QStringLiteral("RS-485"));

        FileDialogAnswerer::Shown dialog;
        {
            FileDialogAnswerer answer({file});
            h.trigger("mOuvrir");
            QCOMPARE(answer.dialogsSeen(), 1);
            dialog = answer.first();
        }
        QVERIFY(dialog.nonNative);
        QCOMPARE(dialog.acceptMode, QFileDialog::AcceptOpen);
        QCOMPARE(dialog.fileMode, QFileDialog::ExistingFile);
        QCOMPARE(dialog.directory, QDir(h.folder().path()).absolutePath());
        QCOMPARE(dialog.nameFilters, QStringList{"File configuration (*.nvl)"});
        QCOMPARE(dialog.defaultSuffix, QStringLiteral("nvl"));

        QCOMPARE(h.panel2(), QStringLiteral("File opened"));
        QCOMPARE(h.main().windowTitle(), caption(file));
        QVERIFY(h.w<QAction>("m_enregistrer")->isEnabled());
        QCOMPARE(recentMenu(h), QStringList({file, "", "", ""}));
        QVERIFY(h.w<QAction>("mtiret3")->isVisible());
        QCOMPARE(satellitesOf(h.net()), QStringList({"5/1/1", "7/0/0", "1999/1/1"}));
        QCOMPARE(terminalsOf(h.net()), QList<qint16>({10, 11, 12}));

        QCOMPARE(h.w<QComboBox>("C_port")->currentText(), QStringLiteral("COM2"));
        QCOMPARE(h.w<QComboBox>("C_timeout")->currentText(), QStringLiteral("20"));
        QCOMPARE(h.w<QLineEdit>("Text1")->text(), QStringLiteral("10"));
        QCOMPARE(h.w<QLineEdit>("Text2")->text(), QStringLiteral("12"));
        QCOMPARE(h.w<QLabel>("L_nbTPChiffre")->text(), QStringLiteral("3"));
        // The first satellite is shown, at position 1, with the network view emptied.
        QCOMPARE(h.w<QLineEdit>("Text3")->text(), QStringLiteral("5"));
        QCOMPARE(h.w<QComboBox>("C_Interface")->currentText(), QStringLiteral("RS-232"));
        QCOMPARE(h.w<QCheckBox>("Check1")->checkState(), Qt::Checked);
        QCOMPARE(h.w<QLabel>("l_index")->text(), QStringLiteral("1/3"));
        QCOMPARE(h.w<QTableWidget>("MFG1")->item(0, 1)->text(), QString());
        QCOMPARE(h.w<QTableWidget>("MFG1")->item(0, 0)->text(), QStringLiteral("ID Sat"));

        // A file with another range: the boxes' checks run as they are set and the
        // last one leaves its "Ready".
        const QString other = h.folder().file("other.nvl");
        h.folder().write("other.nvl", configFileBytes({"COM1", 100, 20, 25, {{8, 0, 1}}}));
        openThroughDialog(h, other);
        QCOMPARE(h.panel2(), QStringLiteral("Ready"));
        QCOMPARE(h.w<QLabel>("L_nbTPChiffre")->text(), QStringLiteral("6"));
        QCOMPARE(h.w<QComboBox>("C_Interface")->currentText(), QStringLiteral("RS-485"));
        QCOMPARE(h.w<QCheckBox>("Check1")->checkState(), Qt::Checked);
        QCOMPARE(h.main().windowTitle(), caption(other));
        QCOMPARE(recentMenu(h), QStringList({other, file, "", ""}));
    }

    void openWithoutSatellitesOrTerminals() {
        MainHarness h;
        h.typeAndLeave("Text1", QStringLiteral("10"));
        h.typeAndLeave("Text2", QStringLiteral("12"));
        h.w<QComboBox>("C_Interface")->setCurrentText(QStringLiteral("RS-485"));
        h.w<QCheckBox>("Check1")->setCheckState(Qt::Unchecked);
        h.typeAndLeave("Text3", QStringLiteral("44"));
        // Every section unused, and a first terminal above the last: both lists empty.
        h.folder().write("empty.nvl", configFileBytes({"COM1", 100, 5, 3, {}}));
        h.net().clearCallLog();
        openThroughDialog(h, h.folder().file("empty.nvl"));

        QCOMPARE(terminalsOf(h.net()), QList<qint16>());
        // The editor still gets a satellite, Sat ID 0, shown with the first defaults.
        QCOMPARE(h.net().callLog().last(), QStringLiteral("Satellites.Add 0"));
        QCOMPARE(h.net().Satellites().Count(), 1);
        QCOMPARE(h.w<QLineEdit>("Text3")->text(), QStringLiteral("0"));
        QCOMPARE(h.w<QComboBox>("C_Interface")->currentText(), QStringLiteral("RS-232"));
        QCOMPARE(h.w<QCheckBox>("Check1")->checkState(), Qt::Checked);
        // "0" is no terminal number: the first box empties itself; the count shows 0.
        QCOMPARE(h.w<QLineEdit>("Text1")->text(), QString());
        QCOMPARE(h.w<QLineEdit>("Text2")->text(), QString());
        QCOMPARE(h.w<QLabel>("L_nbTPChiffre")->text(), QStringLiteral("0"));
        QCOMPARE(h.panel2(), QStringLiteral("Invalid Terminal "));
        // The range is in error: Save as is refused until a range is typed.
        dropFileMenu(h);
        QVERIFY(!h.w<QAction>("m_enregistersous")->isEnabled());
    }

    void failedOpenKeepsTheNameForSave() {
        MainHarness h;
        const QString good = h.folder().file("good.nvl");
        h.folder().write("good.nvl", configFileBytes(threeSatellites));
        openThroughDialog(h, good);

        // The last satellite section lacks its "Enabled" key.
        QByteArray broken = configFileBytes(threeSatellites);
        broken.chop(QByteArrayLiteral("Enabled=0\r\n").size());
        const QString bad = h.folder().file("bad.nvl");
        h.folder().write("bad.nvl", broken);
        openThroughDialog(h, bad);
        QCOMPARE(h.panel2(), QStringLiteral("Error when opening"));
        QCOMPARE(h.main().windowTitle(), caption(good));
        QCOMPARE(recentMenu(h), QStringList({good, "", "", ""}));
        QCOMPARE(h.net().Satellites().Count(), 0);
        QCOMPARE(terminalsOf(h.net()), QList<qint16>());
        QVERIFY(h.w<QAction>("m_enregistrer")->isEnabled());

        // Save now writes to the file that failed to open.
        h.click("b_ClearAll");
        h.trigger("m_enregistrer");
        QCOMPARE(h.panel2(), QStringLiteral("File saved"));
        QCOMPARE(h.main().windowTitle(), caption(bad));
        QCOMPARE(QFile(backupOf(bad)).exists(), true);
        QCOMPARE(keyOf(bad, "Satellite1", "SatId"), QStringLiteral("0"));
        QCOMPARE(keyOf(bad, "Devices", "LastDevice"), QStringLiteral("12"));
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
        h.folder().write("net.nvl", configFileBytes(threeSatellites));
        openThroughDialog(h, file);
        h.folder().write("other.nvl", configFileBytes({}));
        h.w<QLabel>("StatusPanel2")->setText(QStringLiteral("before"));
        const QString panel1 = h.panel1();
        const QByteArray settings = h.folder().read("Setup.ini");
        const QStringList entries = folderEntries(h.folder());
        h.net().clearCallLog();

        FileDialogAnswerer answer;
        h.trigger(command.constData());
        QCOMPARE(answer.dialogsSeen(), 1);
        QCOMPARE(h.panel2(), panel2);
        QCOMPARE(h.panel1(), panel1);
        QCOMPARE(h.main().windowTitle(), caption(file));
        QCOMPARE(recentMenu(h), QStringList({file, "", "", ""}));
        QCOMPARE(h.folder().read("Setup.ini"), settings);
        QCOMPARE(folderEntries(h.folder()), entries);
        QCOMPARE(h.net().callLog(), QStringList());
        QCOMPARE(satellitesOf(h.net()), QStringList({"5/1/1", "7/0/0", "1999/1/1"}));

        // The current file is still the one opened: Save goes there.
        h.trigger("m_enregistrer");
        QCOMPARE(h.panel2(), QStringLiteral("File saved"));
        QVERIFY(QFile::exists(backupOf(file)));
    }

    void saveAsReplacesAnExistingFile() {
        MainHarness h;
        makeSaveable(h);
        const QString target = h.folder().file("target.nvl");
        h.folder().write("target.nvl", "previous version");

        FileDialogAnswerer answer({target});
        h.trigger("m_enregistersous");
        QCOMPARE(answer.dialogsSeen(), 1);
        QCOMPARE(answer.first().acceptMode, QFileDialog::AcceptSave);
        QCOMPARE(answer.first().fileMode, QFileDialog::ExistingFile);
        QCOMPARE(answer.first().directory, QDir(h.folder().path()).absolutePath());
        QCOMPARE(answer.first().nameFilters, QStringList{"File configuration (*.nvl)"});

        QCOMPARE(h.panel2(), QStringLiteral("File saved"));
        QCOMPARE(h.main().windowTitle(), caption(target));
        QVERIFY(h.w<QAction>("m_enregistrer")->isEnabled());
        QCOMPARE(recentMenu(h), QStringList({target, "", "", ""}));
        QCOMPARE(recentSettings(h.folder()), QStringList({target, "", "", ""}));
        QFile backup(backupOf(target));
        QVERIFY(backup.open(QIODevice::ReadOnly));
        QCOMPARE(backup.readAll(), QByteArray("previous version"));
        QCOMPARE(keyOf(target, "Devices", "FirstDevice"), QStringLiteral("10"));
        QCOMPARE(keyOf(target, "Satellite2", "SatId"), QStringLiteral("1"));
        QCOMPARE(keyOf(target, "Satellite3", "SatId"), QStringLiteral("9999"));
    }

    void saveAsOnlyReplacesAnExistingFile() {
        // The dialog itself refuses a name that does not exist, for saving too.
        MainHarness h;
        makeSaveable(h);
        const QString missing = h.folder().file("new.nvl");
        const QString title = h.main().windowTitle();
        FileDialogAnswerer answer({missing});
        h.trigger("m_enregistersous");
        QCOMPARE(answer.dialogsSeen(), 1);
        QCOMPARE(answer.messageBoxes().size(), 1);
        QVERIFY(answer.messageBoxes().first().contains(QStringLiteral("new.nvl")));
        QVERIFY(!QFile::exists(missing));
        QCOMPARE(h.main().windowTitle(), title);
        QCOMPARE(recentMenu(h), QStringList({"", "", "", ""}));
    }

    void saveAsRefused_data() {
        QTest::addColumn<bool>("french");
        QTest::addColumn<bool>("rangeError");
        QTest::addColumn<QString>("panel2");
        QTest::newRow("range error") << false << true << "Error when saving";
        QTest::newRow("range error, French") << true << true << "Enregistrement impossible";
        // Unlike Save, Save as also says so when there is no satellite.
        QTest::newRow("no satellite") << false << false << "Error when saving";
    }
    void saveAsRefused() {
        QFETCH(bool, french);
        QFETCH(bool, rangeError);
        QFETCH(QString, panel2);
        MainHarness h;
        if (french)
            h.trigger("m_French");
        makeSaveable(h);
        if (rangeError) {
            h.typeAndLeave("Text2", QStringLiteral("x"));
        } else {
            // A failed open leaves the control without satellites.
            h.folder().write("bad.nvl", "[General]\r\n");
            openThroughDialog(h, h.folder().file("bad.nvl"));
            QCOMPARE(h.net().Satellites().Count(), 0);
        }
        const QStringList entries = folderEntries(h.folder());
        FileDialogAnswerer answer; // a dialog, were it shown, would be cancelled
        h.trigger("m_enregistersous");
        QCOMPARE(answer.dialogsSeen(), 0);
        QCOMPARE(h.panel2(), panel2);
        QCOMPARE(folderEntries(h.folder()), entries);
    }

    void save_data() {
        QTest::addColumn<QString>("situation");
        QTest::addColumn<bool>("french");
        QTest::addColumn<QString>("panel2");
        QTest::addColumn<bool>("written");
        QTest::newRow("saved") << "saved" << false << "File saved" << true;
        QTest::newRow("saved, French")
            << "saved" << true << QString::fromUtf8("Fichier enregistré") << true;
        QTest::newRow("range error") << "range error" << false << "Error when saving" << false;
        QTest::newRow("range error, French")
            << "range error" << true << "Enregistrement impossible" << false;
        // The checks run first and leave their "Ready"; nothing else is shown.
        QTest::newRow("no satellite") << "no satellite" << false << "Ready" << false;
        QTest::newRow("no file") << "no file" << false << "Ready" << false;
        QTest::newRow("read-only file") << "read-only" << false << "Error when saving" << false;
        QTest::newRow("read-only file, French")
            << "read-only" << true << "Erreur lors de l'enregistrement" << false;
    }
    void save() {
        QFETCH(QString, situation);
        QFETCH(bool, french);
        QFETCH(QString, panel2);
        QFETCH(bool, written);
        MainHarness h;
        if (french)
            h.trigger("m_French");
        const QString file = h.folder().file("net.nvl");
        h.folder().write("net.nvl", "previous version");
        if (situation != QStringLiteral("no file")) {
            // The file becomes current through a failed open, which keeps its name.
            openThroughDialog(h, file);
        }
        if (situation != QStringLiteral("no satellite"))
            h.click("b_ClearAll");
        h.typeAndLeave("Text1", QStringLiteral("10"));
        h.typeAndLeave("Text2",
                       situation == u"range error" ? QStringLiteral("9") : QStringLiteral("12"));
        if (situation == QStringLiteral("read-only"))
            setReadOnly(file);
        // Save is only offered after an open or a save; the handler is driven anyway.
        h.w<QAction>("m_enregistrer")->setEnabled(true);
        const QString title = h.main().windowTitle();
        const QStringList entries = folderEntries(h.folder());

        h.trigger("m_enregistrer");
        QCOMPARE(h.panel2(), panel2);
        QCOMPARE(h.main().windowTitle(), written ? caption(file) : title);
        QCOMPARE(QFile::exists(backupOf(file)), written);
        if (written)
            QCOMPARE(keyOf(file, "Satellite1", "SatId"), QStringLiteral("0"));
        else
            QCOMPARE(folderEntries(h.folder()), entries);
    }

    void aFullListIsWrittenButReportedAsFailed_data() {
        QTest::addColumn<int>("satellites");
        QTest::addColumn<QString>("panel2");
        QTest::newRow("15") << 15 << "File saved";
        QTest::newRow("16") << 16 << "Error when saving";
    }
    void aFullListIsWrittenButReportedAsFailed() {
        QFETCH(int, satellites);
        QFETCH(QString, panel2);
        MainHarness h;
        h.typeAndLeave("Text1", QStringLiteral("1"));
        h.typeAndLeave("Text2", QStringLiteral("1"));
        for (int n = 1; n < satellites; ++n)
            h.click("b_Insert");
        QCOMPARE(h.net().Satellites().Count(), satellites);
        const QString target = h.folder().file("full.nvl");
        h.folder().write("full.nvl", "previous version");
        const QString title = h.main().windowTitle();

        saveAsThroughDialog(h, target);
        QCOMPARE(h.panel2(), panel2);
        const bool saved = satellites < 16;
        QCOMPARE(h.main().windowTitle(), saved ? caption(target) : title);
        QCOMPARE(h.w<QAction>("m_enregistrer")->isEnabled(), saved);
        // The list records the name before the write, whatever its outcome.
        QCOMPARE(recentMenu(h), QStringList({target, "", "", ""}));
        QCOMPARE(keyOf(target, "Satellite15", "SatId"), QStringLiteral("14"));
        QCOMPARE(keyOf(target, "Satellite16", "SatId"), saved ? "9999" : "15");
    }

    void fileMenuOffersSaveAs_data() {
        QTest::addColumn<QString>("first");
        QTest::addColumn<bool>("withSatellites");
        QTest::addColumn<bool>("offered");
        QTest::newRow("valid") << "10" << true << true;
        QTest::newRow("range error") << "13" << true << false;
        // The first box is checked before the last: a refused first (0) is then
        // counted from, and the last check's success allows saving.
        QTest::newRow("refused first") << "0" << true << true;
        QTest::newRow("no satellite") << "10" << false << false;
    }
    void fileMenuOffersSaveAs() {
        QFETCH(QString, first);
        QFETCH(bool, withSatellites);
        QFETCH(bool, offered);
        MainHarness h;
        if (!withSatellites) {
            h.folder().write("bad.nvl", "[General]\r\n");
            openThroughDialog(h, h.folder().file("bad.nvl"));
        }
        h.typeAndLeave("Text2", QStringLiteral("12"));
        h.typeAndLeave("Text1", first);
        // Typed but not left: the menu's checks commit it.
        h.w<QComboBox>("C_port")->setCurrentText(QStringLiteral("COM4"));
        h.w<QAction>("m_enregistersous")->setEnabled(!offered);

        dropFileMenu(h);
        QCOMPARE(h.w<QAction>("m_enregistersous")->isEnabled(), offered);
        QCOMPARE(h.net().CommPort(), QStringLiteral("COM4"));
    }

    void aRunTimeFailureEndsSaveAsSilently() {
        MainHarness h;
        makeSaveable(h);
        h.folder().write("net.nvl", "previous version");
        // 99999 does not fit the control's 16-bit time-out.
        h.w<QComboBox>("C_timeout")->setCurrentText(QStringLiteral("99999"));
        h.w<QLabel>("StatusPanel2")->setText(QStringLiteral("before"));
        {
            FileDialogAnswerer answer({h.folder().file("net.nvl")});
            h.trigger("m_enregistersous");
            QCOMPARE(answer.dialogsSeen(), 0);
        }
        QCOMPARE(h.panel2(), QStringLiteral("before"));
        QCOMPARE(h.net().TimeOut(), qint16(100));
        QCOMPARE(h.folder().read("net.nvl"), QByteArray("previous version"));

        // Save has no handler of its own: the error is reported.
        h.w<QAction>("m_enregistrer")->setEnabled(true);
        h.trigger("m_enregistrer");
        QCOMPARE(h.panel2(), QStringLiteral("Run-time error 6: Overflow"));
    }
};

QTEST_MAIN(tst_FileCommands)
#include "tst_filecommands.moc"
