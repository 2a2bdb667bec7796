#include "satellites/SatelliteCommands.h"

#include "config/Globale.h"
#include "config/IniFile.h"
#include "platform/Numeric.h"
#include "radionet/RadioNetControl.h"
#include "radionet/gui/Pause.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

SatelliteCommands::SatelliteCommands(Widgets w, Globale &g, const Texts &texts,
                                     RadioNetControl &RF1, Pause &pause)
    : w_(w)
    , g_(g)
    , texts_(texts)
    , RF1_(RF1)
    , pause_(pause) {}

void SatelliteCommands::b_Alive_Click() {
    const SatellitePtr satellite = RF1_.Satellites().Item(g_.CurrentSatelliteIndex);
    satellite->Detect();
    g_.RequestMode = 0;
}

void SatelliteCommands::b_GetConfig_Click() {
    const SatellitePtr satellite = RF1_.Satellites().Item(g_.CurrentSatelliteIndex);
    // A pending network error blocks the request, silently.
    if (g_.NetErrorCode != 0)
        return;
    g_.RequestMode = 1;
    satellite->RequestConfig();
}

void SatelliteCommands::b_Config_Click() {
    const SatellitePtr satellite = RF1_.Satellites().Item(g_.CurrentSatelliteIndex);
    const QString text = w_.Text3->text();
    // 2047 is refused here: a satellite cannot be told to answer to "any".
    if (!IsDigitString(text) || textToInt16(text) >= 2000) {
        w_.StatusPanel2->setText(texts_(134));
        return;
    }
    const qint16 newSatId = textToInt16(text);
    // Kept in this order: the satellite is addressed under the identifier it
    // answers to now, and learns the new one from NewSatId.
    satellite->setSatId(g_.LastSatId);
    satellite->setNewSatId(newSatId);
    satellite->setInterface(SatelliteFields::interfaceCode(*w_.C_Interface));
    // Only a plain tick means active; the grey state configures it inactive.
    satellite->setEnabled(w_.Check1->checkState() == Qt::Checked ? 1 : 0);
    if (g_.NetErrorCode != 0) {
        w_.StatusPanel2->setText(QStringLiteral("Error :") + QString::number(g_.NetErrorCode));
        return;
    }
    satellite->Configure();
    w_.StatusPanel2->setText(texts_(133) + w_.Text3->text());
    pause_.run();
    satellite->setSatId(newSatId);
    // The answer confirms the satellite under its new Sat ID.
    satellite->Detect();
    g_.RequestMode = 0;
}
