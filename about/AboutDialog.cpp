#include "about/AboutDialog.h"

#include "about/ProgramInfo.h"
#include "ui_frmAbout.h"

#include <QPointer>

frmAbout::frmAbout(const Globale &g, const Texts &texts, QWidget *parent, ProgramStarter starter)
    : QDialog(parent)
    , ui_(std::make_unique<Ui::frmAbout>())
    , g_(g)
    , starter_(std::move(starter)) {
    ui_->setupUi(this);
    ui_->cmdSysInfo->setText(texts(155));
    Form_Load();
    connect(ui_->cmdOK, &QPushButton::clicked, this, guard_(this, &frmAbout::cmdOK_Click));
    connect(ui_->cmdSysInfo, &QPushButton::clicked, this,
            guard_(this, &frmAbout::cmdSysInfo_Click));
}

frmAbout::~frmAbout() = default;

void frmAbout::Form_Load() {
    applyTexts();
}

void frmAbout::Form_Paint() {
    applyTexts();
}

void frmAbout::cmdOK_Click() {
    accept();
}

void frmAbout::cmdSysInfo_Click() {
    StartSysInfo(g_.ProgramFolder, starter_, this);
}

void frmAbout::paintEvent(QPaintEvent *event) {
    guard_.run([this] { Form_Paint(); });
    QDialog::paintEvent(event);
}

void frmAbout::applyTexts() {
    const bool french = g_.CurrentLanguage == QLatin1StringView("FR");
    const QString caption =
        french ? QStringLiteral("À propos de ") + programTitle() : programTitle();
    const QString version =
        (french ? QStringLiteral("Version ") : QStringLiteral("Release ")) + programVersion();
    const QString title =
        french ? QStringLiteral("Configuration NorVale") : QStringLiteral("Norvale Configuration");
    const QString disclaimer =
        french ? QStringLiteral("Avertissement:\r\nUtiliser cette application uniquement avec les "
                                "satellites NorVale Corvatek.")
               : QStringLiteral("Caution:\r\nUse Corvatek Norvale system");

    // Only what differs is set: this runs on every paint, and setting a label's text
    // schedules another paint.
    if (windowTitle() != caption)
        setWindowTitle(caption);
    if (ui_->lblVersion->text() != version)
        ui_->lblVersion->setText(version);
    if (ui_->lblTitle->text() != title)
        ui_->lblTitle->setText(title);
    if (ui_->lblDisclaimer->text() != disclaimer)
        ui_->lblDisclaimer->setText(disclaimer);
}

About::About(const Globale &g, const Texts &texts, QWidget *window, ProgramStarter starter)
    : g_(g)
    , texts_(texts)
    , window_(window)
    , starter_(std::move(starter)) {}

void About::m_apropos_Click() {
    // Held through a guarded pointer: the window that owns it may go while it runs.
    QPointer<frmAbout> dialog = new frmAbout(g_, texts_, window_, starter_);
    dialog->exec();
    delete dialog.data();
}
