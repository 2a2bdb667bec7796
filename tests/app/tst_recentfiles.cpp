#include "support/FilesSupport.h"

#include <QAction>
#include <QCheckBox>
#include <QDir>

namespace {

// Names of configuration files of the program folder, without their ".nvl", to
// full paths; "" stays "".
QStringList inFolder(const ProgramFolder &folder, const QStringList &names) {
    QStringList paths;
    for (const QString &name : names)
        paths << (name.isEmpty() ? name : folder.file(name + QStringLiteral(".nvl")));
    return paths;
}

// The golden file under each name, and "Setup.ini" listing the recent files.
void prepare(const ProgramFolder &folder, const QStringList &files, const QStringList &recent) {
    for (const QString &name : files)
        folder.write(name + QStringLiteral(".nvl"), goldenWith());
    folder.write("Setup.ini", settingsFile("US", inFolder(folder, recent)));
}

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
        const QStringList none, four{"a", "b", "c", "d"};
        QTest::newRow("first file")
            << none << QStringList{"open a"} << QStringList{"a", "", "", ""};
        QTest::newRow("a fifth file drops the oldest")
            << none << QStringList{"open a", "open b", "open c", "open d", "open e"}
            << QStringList{"e", "d", "c", "b"};
        QTest::newRow("third to the front, fourth stays")
            << none << QStringList{"open a", "open b", "open c", "open d", "menu 3"}
            << QStringList{"b", "d", "c", "a"};
        QTest::newRow("first stays")
            << none << QStringList{"open a", "open b", "menu 1"} << QStringList{"b", "a", "", ""};
        QTest::newRow("second reopened through Open")
            << none << QStringList{"open a", "open b", "open a"} << QStringList{"a", "b", "", ""};
        QTest::newRow("letter case makes another file")
            << none << QStringList{"open a", "open A"} << QStringList{"A", "a", "", ""};
        // After a start the list reads "", a, b, c.
        QTest::newRow("the hole moves down")
            << four << QStringList{"open x"} << QStringList{"x", "", "a", "b"};
        QTest::newRow("fourth to the front")
            << four << QStringList{"menu 4"} << QStringList{"c", "", "a", "b"};
    }
    void listOrder() {
        QFETCH(QStringList, settings);
        QFETCH(QStringList, steps);
        QFETCH(QStringList, expected);
        ProgramFolder folder;
        prepare(folder, {"a", "b", "c", "d", "e", "x", "A"}, settings);
        MainHarness h(folder, QString());
        for (const QString &step : steps) {
            const QString argument = step.section(u' ', 1);
            if (step.startsWith(QStringLiteral("open")))
                openThroughDialog(h, inFolder(folder, {argument}).value(0));
            else
                h.trigger(std::array{"mFile1", "mFile2", "mFile3", "mfile4"}[argument.toInt() - 1]);
            QVERIFY2(h.panel2() != QStringLiteral("Error when opening"), qPrintable(step));
        }
        QCOMPARE(recentMenu(h), inFolder(folder, expected));
        QCOMPARE(recentSettings(folder), inFolder(folder, expected));
        QVERIFY(h.w<QAction>("mtiret3")->isVisible());
    }

    void openingFromTheList() {
        ProgramFolder folder;
        const QString file = folder.file("net.nvl");
        folder.write("net.nvl", goldenWith({{"CommPort=COM1", "CommPort=COM2"}}));
        folder.write("Setup.ini", settingsFile("US", {file}));
        MainHarness h(folder, QString());
        QCOMPARE(recentMenu(h), QStringList({"", file, "", ""}));
        QVERIFY(h.w<QAction>("mtiret3")->isVisible());
        // The range already shown: the boxes do not change and "File opened" stays.
        h.typeAndLeave("Text1", QStringLiteral("10"));
        h.typeAndLeave("Text2", QStringLiteral("12"));
        h.trigger("mFile2");
        QCOMPARE(h.panel2(), "File opened");
        QVERIFY(h.w<QAction>("m_enregistrer")->isEnabled());
        // Unlike File > Open, the list leaves the window caption as it was.
        QCOMPARE(h.main().windowTitle(), "NORVALE Setup");
        QCOMPARE(shown(h, {"C_port", "Text3", "l_index"}), QStringList({"COM2", "5", "1/3"}));
        QCOMPARE(recentMenu(h), QStringList({file, "", "", ""}));

        // The list is kept in memory when "Setup.ini" cannot take it, and the file
        // is shown all the same.
        const QByteArray settings = folder.read("Setup.ini");
        QFile::setPermissions(folder.file("Setup.ini"), QFile::ReadOwner | QFile::ReadGroup);
        folder.write("other.nvl", goldenWith());
        openThroughDialog(h, folder.file("other.nvl"));
        QCOMPARE(h.panel2(), "Error writing setup.ini");
        QCOMPARE(recentMenu(h), QStringList({folder.file("other.nvl"), file, "", ""}));
        QCOMPARE(folder.read("Setup.ini"), settings);
        QCOMPARE(shown(h, {"C_port"}), QStringList({"COM1"}));
    }

    void aMissingFileIsReportedAndKept() {
        ProgramFolder folder;
        prepare(folder, {"net"}, {"net", "gone", "old", "older"});
        MainHarness h(folder, QString());
        h.trigger("m_French");
        h.trigger("mFile2");
        QVERIFY(h.w<QAction>("m_enregistrer")->isEnabled());
        const QStringList list = inFolder(folder, {"net", "", "gone", "old"});
        QCOMPARE(recentMenu(h), list);
        const QByteArray settings = folder.read("Setup.ini");

        h.trigger("mFile3");
        QCOMPARE(h.panel2(), "Erreur lors de l'ouverture");
        QVERIFY(!h.w<QAction>("m_enregistrer")->isEnabled());
        QCOMPARE(recentMenu(h), list);
        QCOMPARE(folder.read("Setup.ini"), settings);
        // What the failed read had cleared stays cleared.
        QCOMPARE(h.net().Satellites().Count(), 0);
    }

    // The command line names a file of the program folder ("%1" is its full path).
    void commandLine_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("commandLine");
        QTest::addColumn<bool>("opened");
        QTest::newRow("blanks around and inside") << "my net.nvl"
                                                  << "  %1   " << true;
        QTest::newRow("upper-case extension") << "NET.NVL"
                                              << "%1" << true;
        QTest::newRow("other extension") << "net.txt"
                                         << "%1" << false;
        QTest::newRow("missing file") << "gone.nvl"
                                      << "%1" << false;
        QTest::newRow("quoted") << "net.nvl"
                                << "\"%1\"" << false;
        QTest::newRow("folder") << "folder.nvl"
                                << "%1" << false;
    }
    void commandLine() {
        QFETCH(QString, file);
        QFETCH(QString, commandLine);
        QFETCH(bool, opened);
        ProgramFolder folder;
        for (const char *name : {"my net.nvl", "NET.NVL", "net.txt", "net.nvl"})
            folder.write(QString::fromLatin1(name), goldenWith());
        QDir(folder.path()).mkdir(QStringLiteral("folder.nvl"));
        MainHarness h(folder, commandLine.arg(folder.file(file)));
        QCOMPARE(h.panel2(), "Ready");
        QCOMPARE(h.main().windowTitle(), "NORVALE Setup");
        QCOMPARE(h.w<QAction>("m_enregistrer")->isEnabled(), opened);
        QCOMPARE(recentMenu(h), QStringList({opened ? folder.file(file) : "", "", "", ""}));
        // Not even tried when refused: a failed read would have emptied the list.
        QCOMPARE(satellitesOf(h.net()),
                 opened ? QStringList({"5/1/1", "7/0/0", "1999/1/1"}) : QStringList({"0/0/0"}));
        QCOMPARE(shown(h, {"Text1"}), QStringList({opened ? "10" : ""}));
    }

    // Set a range, add satellites, save over an existing file (Save as replaces a
    // file, it never creates one), start again and reopen it from the list.
    void technicianRoundTrip() {
        ProgramFolder folder;
        QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("Réseau été")));
        const QString target = folder.file(QStringLiteral("Réseau été/câble ü ñ.nvl"));
        folder.write(QStringLiteral("Réseau été/câble ü ñ.nvl"), "previous version");
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
            // The dialog itself refuses a name that does not exist, for saving too, and
            // stays open for another.
            FileDialogAnswerer answer({folder.file("new.nvl"), target});
            h.trigger("m_enregistersous");
            QCOMPARE(answer.firstShown(), fileDialogAsDesigned("save", folder));
            QCOMPARE(answer.messageBoxes().size(), 1);
            QVERIFY(answer.messageBoxes().value(0).contains(QStringLiteral("new.nvl")));
            QVERIFY(!QFile::exists(folder.file("new.nvl")));
            QCOMPARE(h.panel2(), "File saved");
            QCOMPARE(h.main().windowTitle(), QStringLiteral("NORVALE Setup ") + target);
            QVERIFY(h.w<QAction>("m_enregistrer")->isEnabled());
            QCOMPARE(folder.read(QStringLiteral("Réseau été/câble ü ñ.bak")), "previous version");
        }

        MainHarness again(folder, QString());
        QCOMPARE(recentMenu(again), QStringList({"", target, "", ""}));
        again.trigger("mFile2");
        QCOMPARE(again.panel2(), "Ready");
        QCOMPARE(satellitesOf(again.net()), saved);
        QCOMPARE(terminalsOf(again.net()), QList<qint16>({10, 11, 12}));
        QCOMPARE(shown(again, {"Text1", "Text2", "L_nbTPChiffre", "Text3"}),
                 QStringList({"10", "12", "3", "5"}));
        QCOMPARE(recentSettings(folder), QStringList({target, "", "", ""}));
    }
};

QTEST_MAIN(tst_RecentFiles)
#include "tst_recentfiles.moc"
