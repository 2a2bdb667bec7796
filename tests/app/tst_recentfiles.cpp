#include "support/FilesSupport.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>

namespace {

const ConfigSpec threeSatellites{"COM2", 20, 10, 12, {{5, 1, 1}, {7, 0, 0}, {1999, 1, 1}}};
const QStringList threeSatellitesList{"5/1/1", "7/0/0", "1999/1/1"};

// Names of files of the program folder to their full paths; "" stays "".
QStringList inFolder(const ProgramFolder &folder, const QStringList &names) {
    QStringList paths;
    for (const QString &name : names)
        paths << (name.isEmpty() ? name : folder.file(name));
    return paths;
}

void writeSettings(const ProgramFolder &folder, const QStringList &files) {
    QByteArray bytes = "[General]\r\nVersion=TALMOR NORVALE CONFIGURATION FILE\r\nLanguage=US\r\n";
    for (int n = 0; n < 4; ++n)
        bytes += "File" + QByteArray::number(n + 1) + "=" + files.value(n).toUtf8() + "\r\n";
    folder.write(QStringLiteral("Setup.ini"), bytes);
}

void openThroughDialog(MainHarness &h, const QString &file) {
    FileDialogAnswerer answer({file});
    h.trigger("mOuvrir");
    QCOMPARE(answer.dialogsSeen(), 1);
}

const char *const menuItems[] = {"mFile1", "mFile2", "mFile3", "mfile4"};

} // namespace

class tst_RecentFiles : public QObject {
    Q_OBJECT

private slots:
    // Starting up puts an empty name in front; then each step opens a file, either
    // through File > Open ("open name") or through an item of the list ("menu n").
    void listOrder_data() {
        QTest::addColumn<QStringList>("settings");
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QStringList>("expected");
        const QStringList none;
        QTest::newRow("first file")
            << none << QStringList{"open a.nvl"} << QStringList{"a.nvl", "", "", ""};
        QTest::newRow("a fifth file drops the oldest")
            << none
            << QStringList{"open a.nvl", "open b.nvl", "open c.nvl", "open d.nvl", "open e.nvl"}
            << QStringList{"e.nvl", "d.nvl", "c.nvl", "b.nvl"};
        QTest::newRow("third to the front, fourth stays")
            << none << QStringList{"open a.nvl", "open b.nvl", "open c.nvl", "open d.nvl", "menu 3"}
            << QStringList{"b.nvl", "d.nvl", "c.nvl", "a.nvl"};
        QTest::newRow("first stays") << none << QStringList{"open a.nvl", "open b.nvl", "menu 1"}
                                     << QStringList{"b.nvl", "a.nvl", "", ""};
        QTest::newRow("second reopened through Open")
            << none << QStringList{"open a.nvl", "open b.nvl", "open a.nvl"}
            << QStringList{"a.nvl", "b.nvl", "", ""};
        QTest::newRow("letter case makes another file")
            << none << QStringList{"open a.nvl", "open A.nvl"}
            << QStringList{"A.nvl", "a.nvl", "", ""};
        // After a start the list reads "", a, b, c.
        const QStringList four{"a.nvl", "b.nvl", "c.nvl", "d.nvl"};
        QTest::newRow("the hole moves down")
            << four << QStringList{"open x.nvl"} << QStringList{"x.nvl", "", "a.nvl", "b.nvl"};
        QTest::newRow("second to the front")
            << four << QStringList{"menu 2"} << QStringList{"a.nvl", "", "b.nvl", "c.nvl"};
        QTest::newRow("third to the front")
            << four << QStringList{"menu 3"} << QStringList{"b.nvl", "", "a.nvl", "c.nvl"};
        QTest::newRow("fourth to the front")
            << four << QStringList{"menu 4"} << QStringList{"c.nvl", "", "a.nvl", "b.nvl"};
    }
    void listOrder() {
        QFETCH(QStringList, settings);
        QFETCH(QStringList, steps);
        QFETCH(QStringList, expected);
        ProgramFolder folder;
        for (const char *name : {"a.nvl", "b.nvl", "c.nvl", "d.nvl", "e.nvl", "x.nvl", "A.nvl"})
            folder.write(QString::fromLatin1(name), configFileBytes(threeSatellites));
        if (!settings.isEmpty())
            writeSettings(folder, inFolder(folder, settings));
        MainHarness h(folder, QString());
        for (const QString &step : steps) {
            const QString argument = step.section(u' ', 1);
            if (step.startsWith(QStringLiteral("open")))
                openThroughDialog(h, folder.file(argument));
            else
                h.trigger(menuItems[argument.toInt() - 1]);
            QVERIFY2(h.panel2() != QStringLiteral("Error when opening"), qPrintable(step));
        }
        const QStringList paths = inFolder(folder, expected);
        QCOMPARE(recentMenu(h), paths);
        QCOMPARE(recentSettings(folder), paths);
        QVERIFY(h.w<QAction>("mtiret3")->isVisible());
    }

    void openingFromTheList() {
        ProgramFolder folder;
        folder.write("net.nvl", configFileBytes(threeSatellites));
        writeSettings(folder, {folder.file("net.nvl")});
        MainHarness h(folder, QString());
        QCOMPARE(recentMenu(h), QStringList({"", folder.file("net.nvl"), "", ""}));
        QVERIFY(h.w<QAction>("mtiret3")->isVisible());
        // The range already shown: the boxes do not change and "File opened" stays.
        h.typeAndLeave("Text1", QStringLiteral("10"));
        h.typeAndLeave("Text2", QStringLiteral("12"));

        h.trigger("mFile2");
        QCOMPARE(h.panel2(), QStringLiteral("File opened"));
        QVERIFY(h.w<QAction>("m_enregistrer")->isEnabled());
        // Unlike File > Open, the list leaves the window caption as it was.
        QCOMPARE(h.main().windowTitle(), QStringLiteral("NORVALE Setup"));
        QCOMPARE(satellitesOf(h.net()), threeSatellitesList);
        QCOMPARE(h.w<QLineEdit>("Text3")->text(), QStringLiteral("5"));
        QCOMPARE(h.w<QComboBox>("C_port")->currentText(), QStringLiteral("COM2"));
        QCOMPARE(h.w<QLabel>("l_index")->text(), QStringLiteral("1/3"));
        QCOMPARE(recentMenu(h), QStringList({folder.file("net.nvl"), "", "", ""}));
    }

    void aMissingFileIsReportedAndKept_data() {
        QTest::addColumn<bool>("french");
        QTest::addColumn<QString>("message");
        QTest::newRow("English") << false << "Error when opening";
        QTest::newRow("French") << true << "Erreur lors de l'ouverture";
    }
    void aMissingFileIsReportedAndKept() {
        QFETCH(bool, french);
        QFETCH(QString, message);
        ProgramFolder folder;
        folder.write("net.nvl", configFileBytes(threeSatellites));
        writeSettings(folder, inFolder(folder, {"net.nvl", "gone.nvl", "old.nvl", "older.nvl"}));
        MainHarness h(folder, QString());
        if (french)
            h.trigger("m_French");
        h.trigger("mFile2");
        QVERIFY(h.w<QAction>("m_enregistrer")->isEnabled());
        const QStringList list = inFolder(folder, {"net.nvl", "", "gone.nvl", "old.nvl"});
        QCOMPARE(recentMenu(h), list);
        const QByteArray settings = folder.read("Setup.ini");

        h.trigger("mFile3");
        QCOMPARE(h.panel2(), message);
        QVERIFY(!h.w<QAction>("m_enregistrer")->isEnabled());
        QCOMPARE(recentMenu(h), list);
        QCOMPARE(folder.read("Setup.ini"), settings);
        // What the failed read had cleared stays cleared.
        QCOMPARE(h.net().Satellites().Count(), 0);
    }

    void aSettingsFileThatCannotBeWrittenIsReported() {
        ProgramFolder folder;
        folder.write("net.nvl", configFileBytes(threeSatellites));
        writeSettings(folder, {folder.file("net.nvl")});
        MainHarness h(folder, QString());
        h.typeAndLeave("Text1", QStringLiteral("10"));
        h.typeAndLeave("Text2", QStringLiteral("12"));
        const QByteArray settings = folder.read("Setup.ini");
        QFile::setPermissions(folder.file("Setup.ini"), QFile::ReadOwner | QFile::ReadGroup);

        h.trigger("mFile2");
        QCOMPARE(h.panel2(), QStringLiteral("Error writing setup.ini"));
        QCOMPARE(recentMenu(h), QStringList({folder.file("net.nvl"), "", "", ""}));
        QCOMPARE(folder.read("Setup.ini"), settings);
        QCOMPARE(satellitesOf(h.net()), threeSatellitesList);
    }

    // The command line names a file of the program folder ("%1" is its full path).
    void commandLine_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("create");
        QTest::addColumn<QString>("commandLine");
        QTest::addColumn<bool>("opened");
        QTest::newRow("plain") << "net.nvl" << true << "%1" << true;
        QTest::newRow("blanks around") << "net.nvl" << true << "  %1   " << true;
        QTest::newRow("upper-case extension") << "NET.NVL" << true << "%1" << true;
        QTest::newRow("blank inside the name") << "my net.nvl" << true << "%1" << true;
        QTest::newRow("other extension") << "net.txt" << true << "%1" << false;
        QTest::newRow("missing file") << "net.nvl" << false << "%1" << false;
        QTest::newRow("quoted") << "net.nvl" << true << "\"%1\"" << false;
        QTest::newRow("folder") << "folder.nvl" << false << "%1" << false;
    }
    void commandLine() {
        QFETCH(QString, file);
        QFETCH(bool, create);
        QFETCH(QString, commandLine);
        QFETCH(bool, opened);
        ProgramFolder folder;
        if (create)
            folder.write(file, configFileBytes(threeSatellites));
        QDir(folder.path()).mkdir(QStringLiteral("folder.nvl"));
        const QString path = folder.file(file);
        MainHarness h(folder, commandLine.arg(path));

        QCOMPARE(h.panel2(), QStringLiteral("Ready"));
        QCOMPARE(h.main().windowTitle(), QStringLiteral("NORVALE Setup"));
        QCOMPARE(h.w<QAction>("m_enregistrer")->isEnabled(), opened);
        if (opened) {
            QCOMPARE(satellitesOf(h.net()), threeSatellitesList);
            QCOMPARE(h.w<QLineEdit>("Text1")->text(), QStringLiteral("10"));
            QCOMPARE(recentMenu(h), QStringList({path, "", "", ""}));
        } else {
            // Not even tried: a failed read would have emptied the list.
            QCOMPARE(h.net().Satellites().Count(), 1);
            QVERIFY(!h.net().callLog().contains(QStringLiteral("Satellites.Clear")));
            QCOMPARE(recentMenu(h), QStringList({"", "", "", ""}));
        }
    }

    // Set a range, add satellites, save over an existing file, start again and
    // reopen it from the list.
    void technicianRoundTrip_data() {
        QTest::addColumn<QString>("folderName");
        QTest::addColumn<QString>("fileName");
        QTest::newRow("plain names") << "site"
                                     << "network.nvl";
        QTest::newRow("non-ASCII names")
            << QString::fromUtf8("Réseau été") << QString::fromUtf8("câble ü ñ.nvl");
    }
    void technicianRoundTrip() {
        QFETCH(QString, folderName);
        QFETCH(QString, fileName);
        ProgramFolder folder;
        QVERIFY(QDir(folder.path()).mkdir(folderName));
        const QString target = folder.file(folderName + u'/' + fileName);
        const QByteArray previous = configFileBytes({"COM1", 100, 1, 1, {{42}}});
        folder.write(folderName + u'/' + fileName, previous);
        const QStringList saved{"5/1/1", "7/1/0", "1999/1/1"};
        {
            MainHarness h(folder, QString());
            h.typeAndLeave("Text1", QStringLiteral("10"));
            h.typeAndLeave("Text2", QStringLiteral("12"));
            h.typeAndLeave("Text3", QStringLiteral("5"));
            h.click("b_Insert");
            h.typeAndLeave("Text3", QStringLiteral("7"));
            h.w<QCheckBox>("Check1")->setCheckState(Qt::Unchecked);
            h.leave("Check1");
            h.click("b_Insert");
            h.typeAndLeave("Text3", QStringLiteral("1999"));
            h.w<QCheckBox>("Check1")->setCheckState(Qt::Checked);
            h.leave("Check1");
            QCOMPARE(satellitesOf(h.net()), saved);

            FileDialogAnswerer answer({target});
            h.trigger("m_enregistersous");
            QCOMPARE(answer.dialogsSeen(), 1);
            QCOMPARE(h.panel2(), QStringLiteral("File saved"));
            QCOMPARE(h.main().windowTitle(), QStringLiteral("NORVALE Setup ") + target);
            QFile backup(backupOf(target));
            QVERIFY(backup.open(QIODevice::ReadOnly));
            QCOMPARE(backup.readAll(), previous);
        }

        MainHarness again(folder, QString());
        QCOMPARE(recentMenu(again), QStringList({"", target, "", ""}));
        again.trigger("mFile2");
        QCOMPARE(again.panel2(), QStringLiteral("Ready"));
        QCOMPARE(satellitesOf(again.net()), saved);
        QCOMPARE(terminalsOf(again.net()), QList<qint16>({10, 11, 12}));
        QCOMPARE(again.w<QLineEdit>("Text1")->text(), QStringLiteral("10"));
        QCOMPARE(again.w<QLineEdit>("Text2")->text(), QStringLiteral("12"));
        QCOMPARE(again.w<QLabel>("L_nbTPChiffre")->text(), QStringLiteral("3"));
        QCOMPARE(again.w<QLineEdit>("Text3")->text(), QStringLiteral("5"));
        QCOMPARE(recentMenu(again), QStringList({target, "", "", ""}));
        QCOMPARE(recentSettings(folder), QStringList({target, "", "", ""}));
    }
};

QTEST_MAIN(tst_RecentFiles)
#include "tst_recentfiles.moc"
