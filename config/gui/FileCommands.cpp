#include "config/gui/FileCommands.h"

#include "config/ConfigFile.h"
#include "config/Globale.h"
#include "config/gui/GeneralFields.h"
#include "platform/Numeric.h"
#include "radionet/RadioNetControl.h"
#include "satellites/SatelliteView.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <exception>

FileCommands::FileCommands(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1,
                           GeneralFields &general, SatelliteView &view, RecentFileRecorder &recent)
    : w_(w)
    , g_(g)
    , texts_(texts)
    , RF1_(RF1)
    , general_(general)
    , view_(view)
    , recent_(recent) {}

void FileCommands::RevalidateFields() {
    general_.C_port_LostFocus();
    general_.C_timeout_LostFocus();
    general_.Text1_LostFocus();
    general_.Text2_LostFocus();
}

bool FileCommands::savingAllowed() {
    return RF1_.Satellites().Count() >= 1 && g_.TerminalRangeStatus == 0;
}

void FileCommands::mFichier_Click() {
    RevalidateFields();
    w_.m_enregistersous->setEnabled(savingAllowed());
}

QString FileCommands::askFileName(bool forSaving) {
    QPointer<QFileDialog> CD1 = new QFileDialog(w_.Main);
    CD1->setObjectName(QStringLiteral("CD1"));
    CD1->setOption(QFileDialog::DontUseNativeDialog);
    CD1->setAcceptMode(forSaving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    // The chosen file must exist, for saving too: Save as only replaces a file.
    CD1->setFileMode(QFileDialog::ExistingFile);
    CD1->setOption(QFileDialog::DontConfirmOverwrite);
    CD1->setNameFilter(texts_(139));
    CD1->setDefaultSuffix(QStringLiteral("nvl"));
    CD1->setDirectory(g_.ProgramFolder);
    const bool accepted = CD1->exec() == QDialog::Accepted;
    // The window may have gone while the dialog ran its own loop.
    if (!CD1)
        return QString();
    const QStringList files = CD1->selectedFiles();
    delete CD1;
    return accepted && !files.isEmpty() ? files.first() : QString();
}

void FileCommands::showFileNameInCaption() {
    w_.Main->setWindowTitle(texts_(156) + u' ' + g_.ConfigFileName);
}

void FileCommands::mOuvrir_Click() {
    // A run-time failure anywhere in Open ends it without a word, like a cancel.
    try {
        openChosenFile();
    } catch (const std::exception &) {
    }
}

void FileCommands::openChosenFile() {
    const QString chosen = askFileName(false);
    if (chosen.isEmpty())
        return; // cancelled: nothing read, nothing shown
    g_.ConfigFileName = chosen;
    if (ReadConfigFile(g_.ConfigFileName, RF1_)) {
        w_.StatusPanel2->setText(texts_(143));
        w_.m_enregistrer->setEnabled(true);
        showFileNameInCaption();
        recent_.UpdateRecentFiles();
        ShowConfiguration();
    } else {
        // The failed name stays current: a later Save writes to it.
        w_.StatusPanel2->setText(texts_(144));
    }
}

void FileCommands::m_enregistrer_Click() {
    RevalidateFields();
    if (savingAllowed()) {
        if (g_.ConfigFileName.isEmpty())
            return;
        if (WriteConfigFile(g_.ConfigFileName, RF1_, g_)) {
            w_.StatusPanel2->setText(texts_(140));
            showFileNameInCaption();
        } else {
            w_.StatusPanel2->setText(texts_(141));
        }
    } else if (g_.TerminalRangeStatus == 2) {
        w_.StatusPanel2->setText(texts_(142));
    }
}

void FileCommands::m_enregistersous_Click() {
    // As for Open: any run-time failure, the field checks' included, ends Save as
    // silently.
    try {
        saveUnderChosenName();
    } catch (const std::exception &) {
    }
}

void FileCommands::saveUnderChosenName() {
    RevalidateFields();
    if (!savingAllowed()) {
        // Unlike Save, also said when there is no satellite.
        w_.StatusPanel2->setText(texts_(142));
        return;
    }
    const QString chosen = askFileName(true);
    if (chosen.isEmpty())
        return;
    g_.ConfigFileName = chosen;
    recent_.UpdateRecentFiles();
    if (WriteConfigFile(g_.ConfigFileName, RF1_, g_)) {
        w_.StatusPanel2->setText(texts_(140));
        w_.m_enregistrer->setEnabled(true);
        showFileNameInCaption();
    } else {
        w_.StatusPanel2->setText(texts_(141));
    }
}

void FileCommands::ShowConfiguration() {
    w_.C_port->setCurrentText(RF1_.CommPort());
    w_.C_timeout->setCurrentText(QString::number(RF1_.TimeOut()));
    TerminalList &devices = RF1_.Devices();
    if (devices.Count() == 0) {
        w_.Text1->setText(QStringLiteral("0"));
        w_.Text2->clear();
        w_.L_nbTPChiffre->setText(QStringLiteral("0"));
    } else {
        w_.L_nbTPChiffre->setText(QString::number(devices.Count()));
        // Each box's check runs as it is set; the second one settles the range.
        w_.Text1->setText(QString::number(devices.Item(1)->Number()));
        w_.Text2->setText(QString::number(devices.Item(toInt16(devices.Count()))->Number()));
    }
    g_.CurrentSatelliteIndex = 1;
    SatelliteList &satellites = RF1_.Satellites();
    if (satellites.Count() == 0) {
        // The editor always has a satellite; it needs a valid Sat ID before use.
        w_.Text3->setText(QStringLiteral("0"));
        w_.C_Interface->setCurrentText(QStringLiteral("RS-232"));
        w_.Check1->setCheckState(Qt::Checked);
        satellites.Add(0);
    } else {
        const qint16 firstSatId = satellites.Item(1)->SatId();
        view_.ClearSatelliteView();
        view_.ShowSatellite(firstSatId);
    }
}
