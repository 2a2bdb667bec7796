#include "app/Startup.h"

#include "app/Language.h"
#include "app/RecentFiles.h"
#include "app/Settings.h"
#include "config/Globale.h"
#include "platform/gui/FlexGrid.h"
#include "radionet/RadioNetControl.h"
#include "radionet/gui/LinkStatus.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QTimer>

Startup::Startup(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1,
                 Settings &settings, RecentFiles &recent, Language &language, LinkStatus &link)
    : w_(w)
    , g_(g)
    , texts_(texts)
    , RF1_(RF1)
    , settings_(settings)
    , recent_(recent)
    , language_(language)
    , link_(link) {}

void Startup::Form_Load(const QString &commandLine) {
    w_.Timer1->stop();
    g_.CurrentLanguage = QStringLiteral("US");
    g_.RecentFile1.clear();
    g_.RecentFile2.clear();
    g_.RecentFile3.clear();
    g_.RecentFile4.clear();
    g_.ConfigFileName.clear();
    w_.m_enregistrer->setEnabled(false); // nothing opened or saved yet

    // The language is applied only later, so this message always reads in French;
    // the "Ready" of the last step replaces it.
    if (!settings_.ReadSettings() && !settings_.WriteSettings())
        w_.StatusPanel2->setText(texts_(138));
    recent_.UpdateRecentFiles();
    layOutGrids();

    // The link defaults replace whatever the control held.
    g_.RequestMode = 0;
    RF1_.setTimeOut(100);
    RF1_.setCommPort(QStringLiteral("COM1"));
    RF1_.setBaudRate(QStringLiteral("38400"));
    RF1_.setMode(0);
    RF1_.setSynchro(1);
    RF1_.GetNotification(g_.SendToPc, g_.TimeNotify, g_.TimeGoingOn);
    g_.SendToPc = true;
    g_.TimeNotify = 1;
    g_.TimeGoingOn = 10;
    RF1_.SetNotification(g_.SendToPc, g_.TimeNotify, g_.TimeGoingOn);

    w_.C_port->addItems({QStringLiteral("COM1"), QStringLiteral("COM2"), QStringLiteral("COM3"),
                         QStringLiteral("COM4")});
    w_.C_port->setCurrentText(RF1_.CommPort());
    w_.C_timeout->addItems({QStringLiteral("10"), QStringLiteral("20"), QStringLiteral("50"),
                            QStringLiteral("100"), QStringLiteral("200"), QStringLiteral("500"),
                            QStringLiteral("1000"), QStringLiteral("2000")});
    w_.C_timeout->setCurrentText(QString::number(RF1_.TimeOut()));

    w_.Text1->setText(QStringLiteral("0"));
    w_.Text2->setText(QString());
    w_.L_nbTPChiffre->setText(QStringLiteral("0"));
    w_.Text3->setText(QStringLiteral("0"));
    w_.C_Interface->addItems({QStringLiteral("RS-232"), QStringLiteral("RS-485")});
    w_.C_Interface->setCurrentText(QStringLiteral("RS-232"));
    w_.Check1->setCheckState(Qt::Checked);
    g_.CurrentSatelliteIndex = 1;
    // The network starts with one satellite, Sat ID 0, as the editor shows.
    RF1_.Satellites().Add(0);

    language_.ApplyLanguage();
    if (g_.CurrentLanguage == QStringLiteral("FR")) {
        w_.m_French->setChecked(true);
        w_.m_English->setChecked(false);
    } else if (g_.CurrentLanguage == QStringLiteral("US")) {
        w_.m_French->setChecked(false);
        w_.m_English->setChecked(true);
    }

    openCommandLineFile(commandLine);

    g_.NetErrorCode = 0;
    w_.StatusPanel2->setText(texts_(148));
    w_.StatusPanel1->setText(link_.QueryLinkStatus());
}

void Startup::layOutGrids() {
    FlexGrid::setLayout(w_.MFG1, 6, 2, 0, 1);
    FlexGrid::setColAlignmentFixed(w_.MFG1, 0, 3);
    const char *labels[] = {"ID Sat", "Interface", "Enabled", "RF Version", "Rx Free", "Tx Free"};
    for (int row = 0; row < 6; ++row)
        FlexGrid::setText(w_.MFG1, row, 0, QString::fromLatin1(labels[row]));

    FlexGrid::setLayout(w_.MFG2, 16, 3, 1, 0);
    for (int col = 0; col < 3; ++col)
        FlexGrid::setColAlignmentFixed(w_.MFG2, col, 3);
    FlexGrid::setColWidthTwips(w_.MFG2, 2, 3278);
    FlexGrid::setColAlignment(w_.MFG2, 2, 1);
    FlexGrid::setColAlignment(w_.MFG2, 1, 1);
    FlexGrid::setColAlignment(w_.MFG2, 0, 3);
    FlexGrid::setText(w_.MFG2, 0, 0, QStringLiteral("ID Sat"));
    // Read before the language is applied, and never again: they stay French.
    FlexGrid::setText(w_.MFG2, 0, 1, texts_(131));
    FlexGrid::setText(w_.MFG2, 0, 2, texts_(132));
}

void Startup::openCommandLineFile(const QString &commandLine) {
    // Blanks trimmed at both ends; quotation marks are not removed.
    qsizetype first = 0;
    qsizetype last = commandLine.size();
    while (first < last && commandLine[first] == u' ')
        ++first;
    while (last > first && commandLine[last - 1] == u' ')
        --last;
    const QString path = commandLine.mid(first, last - first);
    if (path.right(4).toUpper() != QStringLiteral(".NVL") || !QFileInfo(path).isFile())
        return;
    g_.ConfigFileName = path;
    recent_.OpenCurrentFile();
}
