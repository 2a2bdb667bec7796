#include "support/FilesSupport.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QTabWidget>
#include <QTableWidget>

namespace {

// Every caption the language table drives, as (objectName, French, English).
struct Caption {
    const char *name, *french, *english;
};
const Caption captions[] = {
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

// The captions, the tabs and the ticks of the language menu are all in one language.
void checkLanguage(MainHarness &h, bool french) {
    for (const Caption &c : captions)
        QCOMPARE(shown(h, {c.name}).value(0), QString::fromUtf8(french ? c.french : c.english));
    auto *tabs = h.w<QTabWidget>("Onglet1");
    QCOMPARE(tabs->tabText(0), french ? "Général" : "General");
    QCOMPARE(tabs->tabText(1), "Norvale(s)");
    QCOMPARE(tabs->tabText(2), french ? "Visualisation" : "Norvale Network");
    QCOMPARE(h.w<QAction>("m_French")->isChecked(), french);
    QCOMPARE(h.w<QAction>("m_English")->isChecked(), !french);
}

} // namespace

class tst_Startup : public QObject {
    Q_OBJECT

private slots:
    void firstStartOnAFreshFolder() {
        MainHarness h;
        // The settings are created exactly as the platform's profile writer would.
        QCOMPARE(h.folder().read("Setup.ini"), referenceFile("Setup.ini"));
        // The control gets its link defaults and one satellite, Sat ID 0.
        QCOMPARE(h.net().callLog(),
                 QStringList({"GetNotification", "SetNotification true 1 10", "Satellites.Add 0"}));
        QCOMPARE(h.main().windowTitle(), "NORVALE Setup");
        QCOMPARE(h.w<QTabWidget>("Onglet1")->currentIndex(), 0);
        QCOMPARE(h.panel2(), "Ready");
        QCOMPARE(h.panel1(), "Com port inactive");
        // "0" is no terminal number: the first box empties itself, and the range
        // checks of the language step leave the count in error until a range is typed.
        QCOMPARE(shown(h, {"Text3", "C_Interface", "l_index", "C_port", "C_timeout", "Text1",
                           "L_nbTPChiffre"}),
                 QStringList({"0", "RS-232", "1/1", "COM1", "100", "", "Error"}));
        QCOMPARE(h.w<QCheckBox>("Check1")->checkState(), Qt::Checked);
        QCOMPARE(h.w<QComboBox>("C_port")->count(), 4);
        QCOMPARE(h.w<QComboBox>("C_timeout")->itemText(7), "2000");
        QVERIFY(!h.w<QAction>("m_enregistrer")->isEnabled());
        QVERIFY(!h.main().findChild<QTimer *>("Timer1")->isActive());
        QVERIFY(!h.main().findChild<QTimer *>("Timer2")->isActive());
        // No recent file: the four items and their separator are hidden.
        QCOMPARE(recentMenu(h), QStringList({"", "", "", ""}));
        QVERIFY(!h.w<QAction>("mtiret3")->isVisible());
        checkLanguage(h, false);

        const auto *mfg1 = h.w<QTableWidget>("MFG1");
        QCOMPARE(mfg1->rowCount(), 6);
        for (int row = 0; row < 6; ++row)
            QCOMPARE(mfg1->item(row, 0)->text(),
                     QStringList({"ID Sat", "Interface", "Enabled", "RF Version", "Rx Free",
                                  "Tx Free"})[row]);
        QVERIFY(!(mfg1->item(0, 0)->flags() & Qt::ItemIsEditable));
        // Read before the language is applied: French whatever the language.
        const auto *mfg2 = h.w<QTableWidget>("MFG2");
        QCOMPARE(mfg2->rowCount(), 16);
        QCOMPARE(mfg2->item(0, 1)->text(), "Statut");
        QCOMPARE(mfg2->item(0, 2)->text(), "Données");
    }

    // "Setup.ini" as found, whether its captions are French, and as rewritten.
    void settingsAreReadAtStartUp_data() {
        QTest::addColumn<QByteArray>("setupIni");
        QTest::addColumn<bool>("french");
        QTest::addColumn<QByteArray>("rewritten");
        const QByteArray fresh = referenceFile("Setup.ini");
        // Each start puts an empty name in front, even before an empty name.
        QTest::newRow("hole kept") << settingsFile("US", {"", "a", "b", ""}) << false
                                   << settingsFile("US", {"", "", "a", "b"});
        // An unknown language keeps the designed French captions, English ticked.
        QTest::newRow("unknown language") << settingsFile("DE") << true << settingsFile("DE");
        // A version that differs by case: the file counts as missing and is rewritten.
        QTest::newRow("version case")
            << settingsFile("FR", {"/a.nvl"}, "Talmor Norvale Configuration File") << false
            << fresh;
        QTest::newRow("no language key")
            << QByteArray("[General]\r\nVersion=TALMOR NORVALE CONFIGURATION FILE\r\n") << false
            << fresh;
        QTest::newRow("LF line ends")
            << QByteArray("[General]\nVersion=TALMOR NORVALE CONFIGURATION FILE\nLanguage=FR\n")
            << true << settingsFile("FR");
    }
    void settingsAreReadAtStartUp() {
        QFETCH(QByteArray, setupIni);
        QFETCH(bool, french);
        QFETCH(QByteArray, rewritten);
        ProgramFolder folder;
        folder.write("Setup.ini", setupIni);
        MainHarness h(folder, QString());
        for (const Caption &c : captions)
            QCOMPARE(shown(h, {c.name}).value(0), QString::fromUtf8(french ? c.french : c.english));
        // French is ticked only for a language of "FR" read from the file.
        const bool frenchTicked = rewritten.contains("Language=FR");
        QCOMPARE(h.w<QAction>("m_French")->isChecked(), frenchTicked);
        QCOMPARE(h.w<QAction>("m_English")->isChecked(), !frenchTicked);
        QCOMPARE(h.panel2(), french ? "Prêt" : "Ready");
        QCOMPARE(folder.read("Setup.ini"), rewritten);
        QCOMPARE(recentMenu(h), recentSettings(folder));
        QCOMPARE(h.w<QAction>("mtiret3")->isVisible(), !recentSettings(folder).join("").isEmpty());
    }

    void unwritableSettingsStillStart() {
        // A program folder that cannot hold Setup.ini: the window still comes up.
        auto *net = new SimulatedRadioNet;
        Main main(net, QStringLiteral("/nonexistent-norvale-folder/sub"), QString());
        QCOMPARE(main.findChild<QLabel *>("StatusPanel2")->text(), "Ready");
        QCOMPARE(net->Satellites().Count(), 1);
    }

    void languageSwitch() {
        MainHarness h;
        // The switch commits the general fields first.
        h.w<QComboBox>("C_port")->setCurrentText(QStringLiteral("COM3"));
        h.w<QComboBox>("C_timeout")->setCurrentText(QStringLiteral("20 s"));
        h.trigger("m_French");
        QCOMPARE(h.net().CommPort(), "COM3");
        QCOMPARE(h.net().TimeOut(), qint16(20));
        checkLanguage(h, true);
        QCOMPARE(h.panel1(), "Inactif");
        QCOMPARE(h.folder().read("Setup.ini"), settingsFile("FR"));
        // Clicking the ticked item again keeps it ticked.
        h.trigger("m_French");
        QVERIFY(h.w<QAction>("m_French")->isChecked());

        h.trigger("m_English");
        checkLanguage(h, false);
        QCOMPARE(h.panel1(), "Com port inactive");
        QCOMPARE(h.folder().read("Setup.ini"), referenceFile("Setup.ini"));
        // The test grid's headers were read once, at start-up.
        QCOMPARE(h.w<QTableWidget>("MFG2")->item(0, 1)->text(), "Statut");

        // The next start comes up in the language chosen last.
        h.trigger("m_French");
        MainHarness again(h.folder(), QString());
        checkLanguage(again, true);
    }

    void closingAsksNothingAndSavesNothing() {
        MainHarness h;
        const QByteArray before = h.folder().read("Setup.ini");
        h.typeAndLeave("Text3", QStringLiteral("12"));
        QVERIFY(h.main().close());
        QVERIFY(!h.main().isVisible());
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(h.folder().read("Setup.ini"), before);
    }
};

QTEST_MAIN(tst_Startup)
#include "tst_startup.moc"
