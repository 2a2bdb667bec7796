#include "app/Main.h"

#include "about/AboutDialog.h"
#include "app/FocusOutFilter.h"
#include "app/Language.h"
#include "app/MainForm.h"
#include "app/OwnCaptions.h"
#include "app/RecentFiles.h"
#include "app/RepaintPacer.h"
#include "app/Settings.h"
#include "app/Startup.h"
#include "config/Globale.h"
#include "config/gui/FileCommands.h"
#include "config/gui/GeneralFields.h"
#include "platform/HandlerGuard.h"
#include "platform/LanguageTable.h"
#include "radionet/RadioNetControl.h"
#include "radionet/RecordingRadioNet.h"
#include "radionet/gui/LinkStatus.h"
#include "radionet/gui/NetworkEvents.h"
#include "radionet/gui/NetworkLogWindow.h"
#include "radionet/gui/Pause.h"
#include "radionet/gui/TestMode.h"
#include "satellites/SatelliteCommands.h"
#include "satellites/SatelliteFields.h"
#include "satellites/SatelliteListEditor.h"
#include "satellites/SatelliteView.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>
#include <QTimer>

// Everything the window owns besides its widgets, in the order it is made.
struct Main::Parts {
    Parts(Main &main, MainForm &ui, RecordingRadioNet &rf1, const QString &programFolder)
        : RF1(rf1)
        , texts(table, g)
        , guard([&ui](const QString &text) { ui.StatusPanel2->setText(text); })
        , pause(g, *ui.Timer1)
        , link({ui.StatusPanel1, ui.StatusPanel2}, g, texts, RF1, pause)
        , settings(g)
        , logMenu(&main, rf1.log(), guard)
        , own({ui.NetworkLabel, ui.m_networkLog}, g, rf1.network(), logMenu)
        , general({ui.C_port, ui.C_timeout, ui.Text1, ui.Text2, ui.L_nbTPChiffre, ui.StatusPanel2},
                  g, texts, RF1)
        , view({ui.Text3, ui.C_Interface, ui.Check1, ui.l_index, ui.b_GetConfig, ui.b_Alive,
                ui.MFG1},
               g, RF1)
        , fields({ui.Text3, ui.C_Interface, ui.Check1, ui.StatusPanel2}, g, texts, RF1, view)
        , list({ui.Text3, ui.b_Config, ui.StatusPanel2}, g, texts, RF1, view, fields, link)
        , commands({ui.Text3, ui.C_Interface, ui.Check1, ui.StatusPanel2}, g, texts, RF1, pause)
        , events({ui.Text3, ui.MFG1, ui.MFG2, ui.b_Config, ui.StatusPanel1, ui.StatusPanel2}, g,
                 texts, RF1, link, view)
        , testMode({ui.Onglet1, ui.MFG2, ui.b_Config, ui.Timer2, ui.StatusPanel1}, g, RF1, fields,
                   link, pause)
        , recent({{ui.mFile1, ui.mFile2, ui.mFile3, ui.mfile4},
                  ui.mtiret3,
                  ui.m_enregistrer,
                  ui.StatusPanel2},
                 g, texts, RF1, settings)
        , files({&main, ui.m_enregistrer, ui.m_enregistersous, ui.C_port, ui.C_timeout, ui.Text1,
                 ui.Text2, ui.L_nbTPChiffre, ui.Text3, ui.C_Interface, ui.Check1, ui.StatusPanel2},
                g, texts, RF1, general, view, recent)
        , language({ui.mFichier,    ui.mOuvrir,   ui.m_enregistrer, ui.m_enregistersous,
                    ui.mQuitter,    ui.m_Options, ui.m_French,      ui.m_English,
                    ui.m_aide,      ui.m_apropos, ui.Onglet1,       ui.F_port,
                    ui.F_terminaux, ui.L_firsTP,  ui.L_lastTP,      ui.L_nbTP,
                    ui.Label5,      ui.L_satID,   ui.Label1,        ui.Check1,
                    ui.b_ClearAll,  ui.b_Insert,  ui.b_Supp,        ui.b_GetConfig,
                    ui.b_Config,    ui.b_Alive,   ui.b_Debut_test,  ui.b_Fin_Test},
                   g, texts, link, general, settings, own)
        , startup({ui.Timer1, ui.m_enregistrer, ui.m_French, ui.m_English, ui.MFG1, ui.MFG2,
                   ui.C_port, ui.C_timeout, ui.Text1, ui.Text2, ui.L_nbTPChiffre, ui.Text3,
                   ui.C_Interface, ui.Check1, ui.StatusPanel1, ui.StatusPanel2},
                  g, texts, RF1, settings, recent, language, link)
        , about(g, texts, &main)
        , focusOut(&main) {
        g.ProgramFolder = programFolder;
        recent.setFileCommands(files);
    }

    RadioNetControl &RF1;
    Globale g;
    LanguageTable table;
    Texts texts;
    HandlerGuard guard;
    Pause pause;
    LinkStatus link;
    Settings settings;
    NetworkLogMenu logMenu;
    OwnCaptions own;
    GeneralFields general;
    SatelliteView view;
    SatelliteFields fields;
    SatelliteListEditor list;
    SatelliteCommands commands;
    NetworkEvents events;
    TestMode testMode;
    RecentFiles recent;
    FileCommands files;
    Language language;
    Startup startup;
    About about;
    FocusOutFilter focusOut;
};

Main::Main(RadioNetControl *rf1, const QString &programFolder, const QString &commandLine,
           QWidget *parent)
    : QMainWindow(parent)
    , ui(std::make_unique<MainForm>()) {
    ui->setupUi(this);
    rf1->setObjectName(QStringLiteral("RF1"));
    // Every call and event on the network goes through the recorder of the network log.
    auto *recorded = new RecordingRadioNet(rf1, this);
    parts = std::make_unique<Parts>(*this, *ui, *recorded, programFolder);
    new RepaintPacer(*this);
    wire();
    parts->guard.run([&] { parts->startup.Form_Load(commandLine); });
}

Main::~Main() {
    // The widgets, timers and control outlive the parts by a moment: nothing of theirs
    // may call back into the parts while they go.
    ui->Timer1->stop();
    ui->Timer2->stop();
    for (QObject *child : findChildren<QObject *>())
        child->disconnect(this);
}

void Main::closeEvent(QCloseEvent *event) {
    // Never a prompt, never a save: the window goes, and with the last window Qt
    // ends the program. Exiting the event loops from here would also cut short any
    // dialog or wait of a host that goes on living, such as a test.
    event->accept();
}

void Main::wire() {
    Parts &p = *parts;
    const HandlerGuard &guard = p.guard;
    auto onClick = [&](QAbstractButton *button, auto *obj, auto handler) {
        connect(button, &QAbstractButton::clicked, this, guard(obj, handler));
    };
    auto onTrigger = [&](QAction *action, auto *obj, auto handler) {
        connect(action, &QAction::triggered, this, guard(obj, handler));
    };
    auto onFocusOut = [&](QWidget *widget, auto *obj, auto handler) {
        p.focusOut.watch(widget, guard(obj, handler));
    };

    // File menu
    connect(ui->mFichier, &QMenu::aboutToShow, this,
            guard(&p.files, &FileCommands::mFichier_Click));
    onTrigger(ui->mOuvrir, &p.files, &FileCommands::mOuvrir_Click);
    onTrigger(ui->m_enregistrer, &p.files, &FileCommands::m_enregistrer_Click);
    onTrigger(ui->m_enregistersous, &p.files, &FileCommands::m_enregistersous_Click);
    onTrigger(ui->mFile1, &p.recent, &RecentFiles::mFile1_Click);
    onTrigger(ui->mFile2, &p.recent, &RecentFiles::mFile2_Click);
    onTrigger(ui->mFile3, &p.recent, &RecentFiles::mFile3_Click);
    onTrigger(ui->mfile4, &p.recent, &RecentFiles::mfile4_Click);
    connect(ui->mQuitter, &QAction::triggered, this, &QWidget::close);

    // Options and help
    onTrigger(ui->m_French, &p.language, &Language::m_French_Click);
    onTrigger(ui->m_English, &p.language, &Language::m_English_Click);
    onTrigger(ui->m_apropos, &p.about, &About::m_apropos_Click);
    onTrigger(ui->m_networkLog, &p.logMenu, &NetworkLogMenu::m_networkLog_Click);

    // General tab
    // The network label follows the port: after it is left, and after a file is opened.
    p.focusOut.watch(ui->C_port, [&p] {
        p.guard.run([&p] { p.general.C_port_LostFocus(); });
        p.guard.run([&p] { p.own.apply(); });
    });
    connect(ui->C_port, &QComboBox::currentTextChanged, this, guard(&p.own, &OwnCaptions::apply));
    onFocusOut(ui->C_timeout, &p.general, &GeneralFields::C_timeout_LostFocus);
    connect(ui->Text1, &QLineEdit::textChanged, this,
            guard(&p.general, &GeneralFields::Text1_Change));
    onFocusOut(ui->Text1, &p.general, &GeneralFields::Text1_LostFocus);
    connect(ui->Text2, &QLineEdit::textChanged, this,
            guard(&p.general, &GeneralFields::Text2_Change));
    onFocusOut(ui->Text2, &p.general, &GeneralFields::Text2_LostFocus);

    // Satellite tab
    onFocusOut(ui->Text3, &p.fields, &SatelliteFields::Text3_LostFocus);
    onFocusOut(ui->C_Interface, &p.fields, &SatelliteFields::C_Interface_LostFocus);
    onFocusOut(ui->Check1, &p.fields, &SatelliteFields::Check1_LostFocus);
    onClick(ui->b_Insert, &p.list, &SatelliteListEditor::b_Insert_Click);
    onClick(ui->b_Supp, &p.list, &SatelliteListEditor::b_Supp_Click);
    onClick(ui->b_ClearAll, &p.list, &SatelliteListEditor::b_ClearAll_Click);
    onClick(ui->b_Next_antenne, &p.list, &SatelliteListEditor::b_Next_antenne_Click);
    onClick(ui->b_Prev_antenne, &p.list, &SatelliteListEditor::b_Prev_antenne_Click);
    onClick(ui->b_Alive, &p.commands, &SatelliteCommands::b_Alive_Click);
    onClick(ui->b_GetConfig, &p.commands, &SatelliteCommands::b_GetConfig_Click);
    onClick(ui->b_Config, &p.commands, &SatelliteCommands::b_Config_Click);

    // Tabs and the live test
    connect(ui->Onglet1, &QTabWidget::currentChanged, this,
            guard(&p.testMode, &TestMode::Onglet1_Click));
    onClick(ui->b_Debut_test, &p.testMode, &TestMode::b_Debut_test_Click);
    onClick(ui->b_Fin_Test, &p.testMode, &TestMode::b_Fin_Test_Click);
    connect(ui->Timer1, &QTimer::timeout, this, guard(&p.pause, &Pause::Timer1_Timer));
    connect(ui->Timer2, &QTimer::timeout, this, guard(&p.testMode, &TestMode::Timer2_Timer));

    // The network's events
    connect(&p.RF1, &RadioNetControl::NetError, this,
            guard(&p.events, &NetworkEvents::RF1_NetError));
    connect(&p.RF1, &RadioNetControl::SatelliteAnswered, this,
            guard(&p.events, &NetworkEvents::RF1_SatelliteAnswered));
    connect(&p.RF1, &RadioNetControl::ConfigReceived, this,
            guard(&p.events, &NetworkEvents::RF1_ConfigReceived));
    connect(&p.RF1, &RadioNetControl::StatusReceived, this,
            guard(&p.events, &NetworkEvents::RF1_StatusReceived));
}
