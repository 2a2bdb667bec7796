#include "support/MainHarness.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>

namespace {

QByteArray settingsFile(const QByteArray &language, const QList<QByteArray> &files,
                        const QByteArray &version = "TALMOR NORVALE CONFIGURATION FILE") {
    QByteArray bytes = "[General]\r\nVersion=" + version + "\r\nLanguage=" + language + "\r\n";
    for (int i = 0; i < 4; ++i)
        bytes += "File" + QByteArray::number(i + 1) + "=" + files.value(i) + "\r\n";
    return bytes;
}

// Every caption the language table drives, as (objectName, French, English).
struct Caption {
    const char *name;
    const char *french;
    const char *english;
};
const Caption captions[] = {
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

QString captionOf(MainHarness &h, const char *name) {
    QObject *object = h.main().findChild<QObject *>(QString::fromLatin1(name));
    if (auto *action = qobject_cast<QAction *>(object))
        return action->text();
    if (auto *box = qobject_cast<QGroupBox *>(object))
        return box->title();
    if (auto *button = qobject_cast<QAbstractButton *>(object))
        return button->text();
    if (auto *label = qobject_cast<QLabel *>(object))
        return label->text();
    return QStringLiteral("<%1 not found>").arg(QString::fromLatin1(name));
}

void checkCaptions(MainHarness &h, bool french) {
    for (const Caption &c : captions)
        QCOMPARE(captionOf(h, c.name), QString::fromUtf8(french ? c.french : c.english));
    auto *tabs = h.w<QTabWidget>("Onglet1");
    QCOMPARE(tabs->tabText(0), QString::fromUtf8(french ? "Général" : "General"));
    QCOMPARE(tabs->tabText(1), QStringLiteral("Norvale(s)"));
    QCOMPARE(tabs->tabText(2), QString::fromUtf8(french ? "Visualisation" : "Norvale Network"));
    QCOMPARE(h.w<QMenu>("mFichier")->title(), QString::fromUtf8(french ? "&Fichier" : "&File"));
    QCOMPARE(h.w<QMenu>("m_Options")->title(), QStringLiteral("&Options"));
    QCOMPARE(h.w<QMenu>("m_interrogation")->title(), QStringLiteral("?"));
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
        QCOMPARE(h.net().TimeOut(), qint16(100));
        QCOMPARE(h.net().CommPort(), QStringLiteral("COM1"));
        QCOMPARE(h.net().BaudRate(), QStringLiteral("38400"));
        QCOMPARE(h.net().Mode(), qint16(0));
        QCOMPARE(h.net().Synchro(), qint32(1));
        QCOMPARE(h.net().Satellites().Count(), 1);
        QCOMPARE(h.net().Satellites().Item(1)->SatId(), qint16(0));

        QCOMPARE(h.main().windowTitle(), QStringLiteral("NORVALE Setup"));
        QCOMPARE(h.w<QTabWidget>("Onglet1")->currentIndex(), 0);
        QCOMPARE(h.panel2(), QStringLiteral("Ready"));
        QCOMPARE(h.panel1(), QStringLiteral("Com port inactive"));
        QCOMPARE(h.w<QLineEdit>("Text3")->text(), QStringLiteral("0"));
        QCOMPARE(h.w<QComboBox>("C_Interface")->currentText(), QStringLiteral("RS-232"));
        QCOMPARE(h.w<QCheckBox>("Check1")->checkState(), Qt::Checked);
        QCOMPARE(h.w<QLabel>("l_index")->text(), QStringLiteral("1/1"));
        QCOMPARE(h.w<QComboBox>("C_port")->currentText(), QStringLiteral("COM1"));
        QCOMPARE(h.w<QComboBox>("C_port")->count(), 4);
        QCOMPARE(h.w<QComboBox>("C_timeout")->currentText(), QStringLiteral("100"));
        QCOMPARE(h.w<QComboBox>("C_timeout")->itemText(7), QStringLiteral("2000"));
        // "0" is no terminal number: the first box empties itself, and the range
        // checks of the language step leave the count in error until a range is typed.
        QCOMPARE(h.w<QLineEdit>("Text1")->text(), QString());
        QCOMPARE(h.w<QLabel>("L_nbTPChiffre")->text(), QStringLiteral("Error"));
        QVERIFY(!h.w<QAction>("m_enregistrer")->isEnabled());
        QVERIFY(h.w<QAction>("m_English")->isChecked());
        QVERIFY(!h.w<QAction>("m_French")->isChecked());
        QVERIFY(!h.main().findChild<QTimer *>("Timer1")->isActive());
        QVERIFY(!h.main().findChild<QTimer *>("Timer2")->isActive());
        // No recent file: the four items and their separator are hidden.
        for (const char *item : {"mFile1", "mFile2", "mFile3", "mfile4", "mtiret3"})
            QVERIFY2(!h.w<QAction>(item)->isVisible(), item);
        QVERIFY(h.w<QAction>("mtiret1")->isSeparator());
        checkCaptions(h, false);
    }

    void gridsAreLaidOut() {
        MainHarness h;
        auto *mfg1 = h.w<QTableWidget>("MFG1");
        QCOMPARE(mfg1->rowCount(), 6);
        QCOMPARE(mfg1->columnCount(), 2);
        const QStringList labels = {"ID Sat",     "Interface", "Enabled",
                                    "RF Version", "Rx Free",   "Tx Free"};
        for (int row = 0; row < 6; ++row) {
            QCOMPARE(mfg1->item(row, 0)->text(), labels[row]);
            QCOMPARE(mfg1->item(row, 1)->text(), QString());
            QVERIFY(!(mfg1->item(row, 0)->flags() & Qt::ItemIsEditable));
        }
        auto *mfg2 = h.w<QTableWidget>("MFG2");
        QCOMPARE(mfg2->rowCount(), 16);
        QCOMPARE(mfg2->columnCount(), 3);
        // Read before the language is applied: French whatever the language.
        QCOMPARE(mfg2->item(0, 0)->text(), QStringLiteral("ID Sat"));
        QCOMPARE(mfg2->item(0, 1)->text(), QStringLiteral("Statut"));
        QCOMPARE(mfg2->item(0, 2)->text(), QString::fromUtf8("Données"));
        QCOMPARE(mfg2->item(3, 1)->textAlignment(), int(Qt::AlignLeft | Qt::AlignVCenter));
        QCOMPARE(mfg2->item(3, 0)->textAlignment(), int(Qt::AlignHCenter | Qt::AlignTop));
        QCOMPARE(mfg2->columnWidth(2), 3278 * 96 / 1440);
    }

    void settingsAreReadAtStartUp_data() {
        QTest::addColumn<QByteArray>("setupIni");
        QTest::addColumn<bool>("french");
        QTest::addColumn<bool>("frenchTicked");
        QTest::addColumn<QByteArray>("rewritten");
        QTest::addColumn<QStringList>("menu");

        const QByteArray full = settingsFile("FR", {"/a.nvl", "/b.nvl", "/c.nvl", "/d.nvl"});
        // A full list loses its oldest entry at each start: an empty name goes in front.
        QTest::newRow("French, four files")
            << full << true << true << settingsFile("FR", {"", "/a.nvl", "/b.nvl", "/c.nvl"})
            << QStringList{"", "/a.nvl", "/b.nvl", "/c.nvl"};
        QTest::newRow("two files drift down")
            << settingsFile("US", {"a", "b"}) << false << false
            << settingsFile("US", {"", "a", "b", ""}) << QStringList{"", "a", "b", ""};
        QTest::newRow("hole kept")
            << settingsFile("US", {"", "a", "b", ""}) << false << false
            << settingsFile("US", {"", "", "a", "b"}) << QStringList{"", "", "a", "b"};
        // An unknown language leaves the base at French and the designed ticks.
        QTest::newRow("unknown language") << settingsFile("DE", {}) << true << false
                                          << settingsFile("DE", {}) << QStringList{"", "", "", ""};
        // A version that differs by case: the file counts as missing and is rewritten.
        QTest::newRow("version case")
            << settingsFile("FR", {"/a.nvl", "/b.nvl", "/c.nvl", "/d.nvl"},
                            "Talmor Norvale Configuration File")
            << false << false << referenceFile("Setup.ini") << QStringList{"", "", "", ""};
        QTest::newRow("no language key")
            << QByteArray("[General]\r\nVersion=TALMOR NORVALE CONFIGURATION FILE\r\n") << false
            << false << referenceFile("Setup.ini") << QStringList{"", "", "", ""};
        QTest::newRow("LF line ends")
            << QByteArray("[General]\nVersion=TALMOR NORVALE CONFIGURATION FILE\nLanguage=FR\n")
            << true << true
            << QByteArray(
                   "[General]\r\nVersion=TALMOR NORVALE CONFIGURATION FILE\r\nLanguage=FR\r\n"
                   "File1=\r\nFile2=\r\nFile3=\r\nFile4=\r\n")
            << QStringList{"", "", "", ""};
    }
    void settingsAreReadAtStartUp() {
        QFETCH(QByteArray, setupIni);
        QFETCH(bool, french);
        QFETCH(bool, frenchTicked);
        QFETCH(QByteArray, rewritten);
        QFETCH(QStringList, menu);

        ProgramFolder folder;
        folder.write("Setup.ini", setupIni);
        MainHarness h(folder, QString());
        checkCaptions(h, french);
        QCOMPARE(h.w<QAction>("m_French")->isChecked(), frenchTicked);
        QCOMPARE(h.w<QAction>("m_English")->isChecked(), !frenchTicked);
        QCOMPARE(h.panel2(), QString::fromUtf8(french ? "Prêt" : "Ready"));
        QCOMPARE(folder.read("Setup.ini"), rewritten);
        const char *items[] = {"mFile1", "mFile2", "mFile3", "mfile4"};
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(h.w<QAction>(items[i])->text(), menu[i]);
            QCOMPARE(h.w<QAction>(items[i])->isVisible(), !menu[i].isEmpty());
        }
        QCOMPARE(h.w<QAction>("mtiret3")->isVisible(), menu.join(QString()) != QString());
    }

    void unwritableSettingsStillStart() {
        // A program folder that cannot hold Setup.ini: the window still comes up.
        auto *net = new SimulatedRadioNet;
        Main main(net, QStringLiteral("/nonexistent-norvale-folder/sub"), QString());
        QCOMPARE(main.findChild<QLabel *>("StatusPanel2")->text(), QStringLiteral("Ready"));
        QCOMPARE(main.findChild<QLabel *>("StatusPanel1")->text(),
                 QStringLiteral("Com port inactive"));
        QCOMPARE(net->Satellites().Count(), 1);
    }

    void languageSwitch() {
        MainHarness h;
        h.trigger("m_French");
        checkCaptions(h, true);
        QVERIFY(h.w<QAction>("m_French")->isChecked());
        QVERIFY(!h.w<QAction>("m_English")->isChecked());
        QCOMPARE(h.panel1(), QStringLiteral("Inactif"));
        QCOMPARE(h.folder().read("Setup.ini"), settingsFile("FR", {}));
        // Clicking the ticked item again keeps it ticked.
        h.trigger("m_French");
        QVERIFY(h.w<QAction>("m_French")->isChecked());

        h.trigger("m_English");
        checkCaptions(h, false);
        QCOMPARE(h.panel1(), QStringLiteral("Com port inactive"));
        QCOMPARE(h.folder().read("Setup.ini"), referenceFile("Setup.ini"));
        // The test grid's headers were read once, at start-up.
        QCOMPARE(h.w<QTableWidget>("MFG2")->item(0, 1)->text(), QStringLiteral("Statut"));

        // The next start comes up in the language chosen last.
        h.trigger("m_French");
        MainHarness again(h.folder(), QString());
        checkCaptions(again, true);
    }

    void languageSwitchCommitsTheGeneralFields() {
        MainHarness h;
        h.w<QComboBox>("C_port")->setCurrentText(QStringLiteral("COM3"));
        h.w<QComboBox>("C_timeout")->setCurrentText(QStringLiteral("20 s"));
        h.trigger("m_French");
        QCOMPARE(h.net().CommPort(), QStringLiteral("COM3"));
        QCOMPARE(h.net().TimeOut(), qint16(20));
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
