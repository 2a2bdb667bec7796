#include "about/AboutDialog.h"
#include "about/SysInfo.h"
#include "app/RepaintPacer.h"
#include "config/Globale.h"
#include "platform/LanguageTable.h"
#include "platform/RegistryFile.h"
#include "platform/RuntimeError.h"
#include "support/MainHarness.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>

namespace {

// Every caption the language table drives, as (objectName, French, English).
const char *const Captions[][3] = {
    {"mFichier", "&Fichier", "&File"},
    {"mOuvrir", "&Ouvrir", "&Open"},
    {"m_enregistrer", "&Enregistrer", "&Save"},
    {"m_enregistersous", "En&registrer sous", "S&ave as"},
    {"mQuitter", "&Quitter", "&Exit"},
    {"m_French", "Français", "French"},
    {"m_English", "English", "English"},
    {"m_aide", "&Aide", "Help"},
    {"m_apropos", "A propos de Norvale Setup", "About"},
    {"F_port", "Paramètres de  communication", "Communication parameters"},
    {"F_terminaux", "Terminaux Portables", "Portable terminal"},
    {"L_firsTP", "Du terminal numéro :", "From terminal number :"},
    {"L_lastTP", "au terminal numéro :", "to terminal number :"},
    {"L_nbTP", "Nombre de terminaux déclarés :", "Number of terminal available:"},
    {"Label5", "Index :", "Index :"},
    {"L_satID", "Norvale  :", "Norvale  :"},
    {"Label1", "Interface :", "Interface :"},
    {"Check1", "Norvale Actif", "Norvale Active "},
    {"b_ClearAll", "Supprimer Tous les Norvales", "Remove all Norvale"},
    {"b_Insert", "Insérer un Norvale", "Insert Norvale"},
    {"b_Supp", "Supprimer un Norvale", "Remove Norvale"},
    {"b_GetConfig", "Afficher la configuration", "Show configuration"},
    {"b_Config", "Configurer un Norvale", "Configure Norvale"},
    {"b_Alive", "Détecter un Norvale", "Detect Norvale"},
    {"b_Debut_test", "Début Test", "Start Test"},
    {"b_Fin_Test", "Fin Test", "End Test"},
};

// The captions and the three tabs' texts as shown, and as they read in one language.
QStringList captions(MainHarness &h) {
    QStringList texts;
    for (const auto &caption : Captions)
        texts << h.shown({caption[0]});
    const auto *tabs = h.w<QTabWidget>("Onglet1");
    return texts << tabs->tabText(0) << tabs->tabText(1) << tabs->tabText(2);
}
QStringList captions(bool french) {
    QStringList texts;
    for (const auto &caption : Captions)
        texts << QString::fromUtf8(caption[french ? 1 : 2]);
    return texts << (french ? "Général" : "General") << "Norvale(s)"
                 << (french ? "Visualisation" : "Norvale Network");
}

class Canvas : public QWidget {
public:
    int paints = 0;

protected:
    void paintEvent(QPaintEvent *) override { ++paints; }
};

// Names of configuration files of the program folder, without their ".nvl", to
// full paths; "" stays "".
QStringList inFolder(const ProgramFolder &folder, const QStringList &names) {
    QStringList paths;
    for (const QString &name : names)
        paths << (name.isEmpty() ? name : folder.file(name + QStringLiteral(".nvl")));
    return paths;
}

// From inside whatever modal loop runs, hands each modal widget to `act`, then
// closes it.
void whenModal(QObject *context, std::function<void(QWidget *)> act) {
    auto *timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, act = std::move(act)] {
        if (QWidget *modal = QApplication::activeModalWidget()) {
            timer->stop();
            act(modal);
            modal->close();
        }
    });
    timer->start(10);
}

const QString Version = QStringLiteral("%1.%2.%3")
                            .arg(NORVALE_VERSION_MAJOR)
                            .arg(NORVALE_VERSION_MINOR)
                            .arg(NORVALE_VERSION_PATCH);
const QByteArray Location =
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared Tools Location]\n\"MSINFO\"=\"@FOLDER@\"\n";

} // namespace

class tst_Shell : public QObject {
    Q_OBJECT

    LanguageTable table_;

private slots:
    void firstStartOnAFreshFolder() {
        MainHarness h;
        // The settings are created exactly as the platform's profile writer would.
        QCOMPARE(h.folder().read("Setup.ini"), referenceFile("Setup.ini"));
        // "0" is no terminal number: the first box empties itself, and the range checks
        // of the language step leave the count in error until a range is typed. The test
        // grid's headers are read before the language is applied: French.
        QCOMPARE(
            h.state({"log",         "Onglet1#",      "StatusPanel1",   "StatusPanel2", "Text3",
                     "C_Interface", "Check1#",       "l_index",        "C_port",       "C_timeout",
                     "Text1",       "L_nbTPChiffre", "m_enregistrer?", "Timer1#",      "Timer2#",
                     "recent",      "mtiret3!",      "m_French#",      "m_English#",   "MFG2:0"}),
            "GetNotification,SetNotification true 1 10,Satellites.Add 0 | 0 | Com port "
            "inactive | Ready | 0 | RS-232 | 2 | 1/1 | COM1 | 100 |  | Error | false | false | "
            "false | ,,, | false | false | true | ID Sat,Statut,Données");
        QCOMPARE(h.main().windowTitle(), "NORVALE Setup");
        QCOMPARE(h.w<QComboBox>("C_port")->count() + h.w<QComboBox>("C_timeout")->count(), 12);
        QCOMPARE(captions(h), captions(false));
        QStringList labels;
        for (int row = 0; row < 6; ++row)
            labels << h.w<QTableWidget>("MFG1")->item(row, 0)->text();
        QCOMPARE(labels.join(u','), "ID Sat,Interface,Enabled,RF Version,Rx Free,Tx Free");
        QCOMPARE(h.w<QTableWidget>("MFG2")->rowCount(), 16);
    }

    // "Setup.ini" as found, whether the captions are French, the language ticked, and
    // the file as rewritten.
    void settingsAreReadAtStartUp_data() {
        QTest::addColumn<QByteArray>("setupIni");
        QTest::addColumn<bool>("french");
        QTest::addColumn<QString>("ticked");
        QTest::addColumn<QByteArray>("rewritten");
        const QByteArray fresh = referenceFile("Setup.ini");
        // Each start puts an empty name in front, even before an empty name.
        QTest::newRow("hole kept") << settingsFile("US", {"", "a", "b", ""}) << false
                                   << "false | true" << settingsFile("US", {"", "", "a", "b"});
        // An unknown language keeps the designed French captions, English ticked.
        QTest::newRow("unknown language")
            << settingsFile("DE") << true << "false | true" << settingsFile("DE");
        // A version that differs by case: the file counts as missing and is rewritten.
        QTest::newRow("version case")
            << settingsFile("FR", {"/a.nvl"}, "Talmor Norvale Configuration File") << false
            << "false | true" << fresh;
        QTest::newRow("no language key")
            << QByteArray("[General]\r\nVersion=TALMOR NORVALE CONFIGURATION FILE\r\n") << false
            << "false | true" << fresh;
        QTest::newRow("LF line ends")
            << QByteArray("[General]\nVersion=TALMOR NORVALE CONFIGURATION FILE\nLanguage=FR\n")
            << true << "true | false" << settingsFile("FR");
    }

    void settingsAreReadAtStartUp() {
        QFETCH(QByteArray, setupIni);
        QFETCH(bool, french);
        QFETCH(QByteArray, rewritten);
        ProgramFolder folder;
        folder.write("Setup.ini", setupIni);
        MainHarness h({}, {}, &folder);
        QCOMPARE(captions(h), captions(french));
        QTEST(h.state({"m_French#", "m_English#"}), "ticked");
        QCOMPARE(h.panel2(), french ? "Prêt" : "Ready");
        QCOMPARE(folder.read("Setup.ini"), rewritten);
        QCOMPARE(h.state({"recent", "mtiret3!"}),
                 recentSettings(folder).join(u',') +
                     (recentSettings(folder).join("").isEmpty() ? " | false" : " | true"));
    }

    // A program folder that cannot hold Setup.ini: the window still comes up. The
    // error is told before the language is applied, so in French, then replaced.
    void unwritableSettingsStillStart() {
        ProgramFolder folder;
        const auto permissions = QFile::permissions(folder.path());
        QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner);
        MainHarness h({}, {}, &folder);
        QFile::setPermissions(folder.path(), permissions);
        QCOMPARE(h.panel2History().value(0), "Erreur Ecriture setup.ini");
        QCOMPARE(h.panel2(), "Ready");
        QCOMPARE(h.net().Satellites().Count(), 1);
        QVERIFY(!QFile::exists(folder.file("Setup.ini")));
    }

    // The switch commits the general fields first; the ticked item chosen again keeps
    // its tick. The test grid's headers were read once, at start-up. The next start
    // comes up in the language chosen last.
    void languageSwitch() {
        MainHarness h;
        h.act("C_port=COM3 C_timeout=20s m_French m_French");
        QCOMPARE(h.net().CommPort() + QString::number(h.net().TimeOut()), "COM320");
        QCOMPARE(captions(h), captions(true));
        QCOMPARE(h.state({"m_French#", "m_English#", "StatusPanel1"}), "true | false | Inactif");
        QCOMPARE(h.folder().read("Setup.ini"), settingsFile("FR"));
        h.act("m_English");
        QCOMPARE(captions(h), captions(false));
        QCOMPARE(h.state({"m_French#", "m_English#", "StatusPanel1", "MFG2:0"}),
                 "false | true | Com port inactive | ID Sat,Statut,Données");
        QCOMPARE(h.folder().read("Setup.ini"), referenceFile("Setup.ini"));
        h.act("m_French");
        MainHarness again({}, {}, &h.folder());
        QCOMPARE(captions(again), captions(true));
    }

    void closingAsksNothingAndSavesNothing() {
        MainHarness h;
        const QByteArray before = h.folder().read("Setup.ini");
        h.act("Text3=12 Text3");
        QVERIFY(h.main().close());
        QVERIFY(!h.main().isVisible());
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(h.folder().read("Setup.ini"), before);
    }

    // Repaints asked for within a frame of the last one are held, never lost: the
    // last change always reaches the screen.
    void heldRepaintArrives() {
        Canvas canvas;
        new RepaintPacer(canvas, 200);
        canvas.resize(100, 100);
        canvas.show();
        QVERIFY(QTest::qWaitForWindowExposed(&canvas));
        QTRY_VERIFY(canvas.paints >= 1);
        for (int round = 0; round < 2; ++round) {
            const int before = canvas.paints;
            for (int i = 0; i < 20; ++i) {
                canvas.update();
                QCoreApplication::processEvents();
            }
            QTRY_VERIFY(canvas.paints > before);
        }
    }

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
        for (const QString &name : inFolder(folder, {"a", "b", "c", "d", "e", "x", "A"}))
            QFile::copy(QStringLiteral(NORVALE_REFERENCE_DIR "/three-satellites.nvl"), name);
        folder.write("Setup.ini", settingsFile("US", inFolder(folder, settings)));
        MainHarness h({}, {}, &folder);
        for (const QString &step : steps) {
            const QString argument = step.section(u' ', 1);
            if (step.startsWith(QStringLiteral("open")))
                h.open(inFolder(folder, {argument}).value(0));
            else
                h.act(QStringList{"mFile1", "mFile2", "mFile3", "mfile4"}[argument.toInt() - 1]);
            QVERIFY2(h.panel2() != QStringLiteral("Error when opening"), qPrintable(step));
        }
        QCOMPARE(h.state({"recent", "mtiret3!"}),
                 inFolder(folder, expected).join(u',') + " | true");
        QCOMPARE(recentSettings(folder), inFolder(folder, expected));
    }

    void openingFromTheList() {
        ProgramFolder folder;
        const QStringList listed = inFolder(folder, {"net", "gone"});
        folder.write("net.nvl", goldenWith({{"CommPort=COM1", "CommPort=COM2"}}));
        folder.write("Setup.ini", settingsFile("FR", listed));
        MainHarness h({}, {}, &folder);
        QCOMPARE(h.state({"recent"}), ',' + listed.join(u',') + ',');
        // The range already shown: the boxes do not change and "File opened" stays.
        // Unlike File > Open, the list leaves the window caption as it was.
        h.act("Text1=10 Text1 Text2=12 Text2 mFile2");
        const QString list = listed[0] + ",," + listed[1] + ',';
        QCOMPARE(
            h.state({"StatusPanel2", "m_enregistrer?", "C_port", "Text3", "l_index", "recent"}),
            "Fichier ouvert | true | COM2 | 5 | 1/3 | " + list);
        QCOMPARE(h.main().windowTitle(), "NORVALE Setup");

        // A recent file that is gone is reported and stays listed; what the failed
        // read had cleared stays cleared.
        const QByteArray settings = folder.read("Setup.ini");
        h.act("mFile3");
        QCOMPARE(h.state({"StatusPanel2", "m_enregistrer?", "recent", "sats"}),
                 "Erreur lors de l'ouverture | false | " + list + " | ");
        QCOMPARE(folder.read("Setup.ini"), settings);

        // The list is kept in memory when "Setup.ini" cannot take it, and the file
        // is shown all the same.
        QFile::setPermissions(folder.file("Setup.ini"), QFile::ReadOwner | QFile::ReadGroup);
        folder.write("other.nvl", goldenWith());
        h.open(folder.file("other.nvl"));
        QCOMPARE(h.state({"StatusPanel2", "recent", "C_port"}),
                 "Erreur Ecriture setup.ini | " + folder.file("other.nvl") + ',' + listed[0] +
                     ",," + listed[1] + " | COM1");
        QCOMPARE(folder.read("Setup.ini"), settings);
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
        MainHarness h(commandLine.arg(folder.file(file)), {}, &folder);
        // Not even tried when refused: a failed read would have emptied the list.
        QCOMPARE(h.state({"StatusPanel2", "m_enregistrer?", "recent", "sats", "Text1"}),
                 opened ? "Ready | true | " + folder.file(file) + ",,, | 5/1/1 7/0/0 1999/1/1 | 10"
                        : QStringLiteral("Ready | false | ,,, | 0/0/0 | "));
        QCOMPARE(h.main().windowTitle(), "NORVALE Setup");
    }

    // Shown modally over the window from the menu; only "FR" gives the French texts,
    // set again on every paint, the button follows the language base.
    void dialogTexts_data() {
        QTest::addColumn<QString>("language");
        QTest::addColumn<int>("languageBase");
        QTest::addColumn<bool>("french");
        QTest::newRow("French") << "FR" << 0 << true;
        QTest::newRow("English") << "US" << 100 << false;
        QTest::newRow("lower-case fr, French base") << "fr" << 0 << false;
    }

    void dialogTexts() {
        QFETCH(QString, language);
        QFETCH(int, languageBase);
        QFETCH(bool, french);
        Globale g;
        g.CurrentLanguage = language;
        g.LanguageBase = qint16(languageBase);
        const Texts texts(table_, g);
        const QString button = languageBase == 0 ? QStringLiteral("Infos système...")
                                                 : QStringLiteral("System Info...");
        const QStringList fr{"À propos de Norvale Setup", "Version " + Version,
                             "Configuration NorVale",
                             "Avertissement:\r\nUtiliser cette application uniquement avec les "
                             "satellites NorVale Corvatek.",
                             button};
        const QStringList en{"Norvale Setup", "Release " + Version, "Norvale Configuration",
                             "Caution:\r\nUse Corvatek Norvale system", button};
        QWidget window;
        About about(g, texts, &window, [](const QString &) { return true; });
        QObject context;
        whenModal(&context, [&](QWidget *modal) {
            auto *dialog = qobject_cast<frmAbout *>(modal);
            QVERIFY(dialog && dialog->isModal() && dialog->parentWidget() == &window);
            const auto shown = [&] {
                QStringList texts{dialog->windowTitle()};
                for (const char *name : {"lblVersion", "lblTitle", "lblDisclaimer", "cmdSysInfo"})
                    texts << dialog->findChild<QWidget *>(name)->property("text").toString();
                return texts;
            };
            QCOMPARE(shown(), french ? fr : en);
            g.CurrentLanguage = french ? "US" : "FR";
            g.LanguageBase = qint16(100 - languageBase);
            dialog->findChild<QLabel *>("lblVersion")->setText(QStringLiteral("changed"));
            QVERIFY(QTest::qWaitForWindowExposed(dialog));
            dialog->repaint();
            QCOMPARE(shown().mid(0, 4), (french ? en : fr).mid(0, 4));
            dialog->findChild<QPushButton *>("cmdOK")->click();
        });
        about.m_apropos_Click(); // returns once the dialog has closed
        QVERIFY(window.findChildren<frmAbout *>().isEmpty());
    }

    // The message, the same in both languages, when no tool could be started.
    void sysInfo_data() {
        QTest::addColumn<QByteArray>("registry"); // empty: no Registry.reg at all
        QTest::addColumn<QString>("started");     // what the starter is asked to start, if anything
        const auto row = [](const char *tag, const QByteArray &registry, const char *started) {
            QTest::newRow(tag) << registry << started;
        };
        const QByteArray path = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared "
                                "Tools\\MSINFO]\n\"PATH\"=\"/opt/sys \\\"info\\\"\\\\tool\"\n";
        const char *tool = "/opt/sys \"info\"\\tool";
        row("no registry file", {}, "");
        row("PATH before the location", path + Location, tool);
        // The folder and the file name are joined with a backslash; a file of exactly
        // that name is found.
        row("location with MSINFO32.EXE",
            "REGEDIT4\n" + QByteArray(Location).replace("@FOLDER@", "@FOLDER@/tools"),
            "@FOLDER@/tools\\MSINFO32.EXE");
        row("location without MSINFO32.EXE", "REGEDIT4\n" + Location, "");
    }

    void sysInfo() {
        QFETCH(QByteArray, registry);
        QFETCH(QString, started);
        ProgramFolder folder;
        if (!registry.isEmpty())
            folder.write(RegistryFile::fileName(),
                         registry.replace("@FOLDER@", folder.path().toUtf8()));
        folder.write(QStringLiteral("tools\\MSINFO32.EXE"), "#!/bin/sh\n");
        Globale g;
        g.ProgramFolder = folder.path();
        const Texts texts(table_, g);
        QStringList asked;
        frmAbout dialog(g, texts, nullptr, [&](const QString &program) {
            asked << QString(program).replace(folder.path(), QStringLiteral("@FOLDER@"));
            return true;
        });
        dialog.show();
        QObject context;
        QString message;
        whenModal(&context, [&](QWidget *modal) {
            auto *box = qobject_cast<QMessageBox *>(modal);
            message = box && box->standardButtons() == QMessageBox::Ok
                          ? box->text()
                          : QStringLiteral("another modal window");
        });
        dialog.findChild<QPushButton *>("cmdSysInfo")->click();
        QCOMPARE(asked, started.isEmpty() ? QStringList() : QStringList{started});
        QCOMPARE(message, started.isEmpty() ? QStringLiteral("Les informations système ne sont pas "
                                                             "disponibles actuellement")
                                            : QString());
        QVERIFY(dialog.isVisible());
    }

    // Value "V" of HKEY_LOCAL_MACHINE\SOFTWARE\Test unless the row says otherwise, read
    // into a text that held "before".
    void getKeyValue_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("before");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("after");
        const QByteArray H = "REGEDIT4\r\n", T = H + "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Test]\r\n";
        const auto V = [&](const QByteArray &value) { return T + "\"V\"=" + value; };
        auto row = [](const char *tag, const QByteArray &file, const QString &before, bool ok,
                      const QString &after, const QString &name = "V",
                      const QString &key = "SOFTWARE\\Test") {
            QTest::newRow(tag) << file << key << name << before << ok << after;
        };
        row("string with escapes", V("\"C:\\\\Tools\\\\say \\\"hi\\\"\""), "old", true,
            "C:\\Tools\\say \"hi\"");
        row("name in another case", T + "\"Mixed Case\"=\"found\"", "", true, "found",
            "MIXED case");
        // Bytes 04 03 02 01 read last to first, one digit each: &h1234.
        row("dword 01020304", V("dword:01020304"), "", true, "4660");
        row("dword all ones", V("dword:ffffffff"), "", true, "-1");
        // The text is not cleared first: its digits lead the number.
        row("dword after hex text", V("dword:0000001a"), "F", true, "983066");
        row("dword after other text", V("dword:0000001a"), "xyz", false, "raised");
        row("dword past 32 bits", V("dword:ffffffff"), "FFFF", true, "281474976710655");
        row("expandable string keeps the text", V("hex(2):41,42,00"), "keep", true, "keep");
        row("only one zero dropped", V("hex(1):41,00,00"), "", true,
            QStringLiteral("A") + QChar(0));
        row("1025 bytes do not", V('"' + QByteArray(1024, 'x') + '"'), "old", false, "");

        // Encodings: a byte-order mark, else UTF-8.
        const QString accented = QStringLiteral("/opt/système");
        const QString v5 = QStringLiteral("Windows Registry Editor Version 5.00\r\n");
        const QString body = T.sliced(H.size()) + "\"V\"=\"" + accented + '"';
        QByteArray utf16("\xff\xfe", 2);
        for (QChar c : v5 + body)
            utf16.append(char(c.unicode() & 0xff)).append(char(c.unicode() >> 8));
        row("UTF-16 version 5 export", utf16, "", true, accented);
        row("UTF-8", H + body.toUtf8(), "", true, accented);
        row("the file shipped", referenceFile("../../resources/Registry.reg"), "", true,
            "/usr/bin/hardinfo", "PATH", "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO");
    }

    void getKeyValue() {
        QFETCH(QByteArray, file);
        QFETCH(QString, key);
        QFETCH(QString, name);
        QFETCH(QString, before);
        QString text = before;
        bool ok = false;
        try {
            ok = GetKeyValue(RegistryFile::fromBytes(file), RegistryFile::Root::LocalMachine, key,
                             name, text);
        } catch (const RuntimeError &) {
            text = QStringLiteral("raised");
        }
        QTEST(ok, "ok");
        QTEST(text, "after");
    }
};

QTEST_MAIN(tst_Shell)
#include "tst_shell.moc"
