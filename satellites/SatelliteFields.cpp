#include "satellites/SatelliteFields.h"

#include "config/Globale.h"
#include "config/IniFile.h"
#include "platform/Numeric.h"
#include "radionet/RadioNetControl.h"
#include "satellites/SatelliteView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

SatelliteFields::SatelliteFields(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1,
                                 SatelliteView &view)
    : w_(w)
    , g_(g)
    , texts_(texts)
    , RF1_(RF1)
    , view_(view) {}

void SatelliteFields::rejectSatId() {
    // "9999" marks a rejected Sat ID in the field; the satellite keeps its own.
    w_.Text3->setText(QStringLiteral("9999"));
    w_.StatusPanel2->setText(texts_(134));
    view_.DisableSatelliteQueries();
}

std::optional<qint16> SatelliteFields::acceptedSatId() {
    const QString text = w_.Text3->text();
    if (!IsDigitString(text)) {
        rejectSatId();
        return std::nullopt;
    }
    const qint16 value = textToInt16(text); // a number beyond 16 bits raises here
    if (value < 2000 || value == 2047)
        return value;
    rejectSatId();
    return std::nullopt;
}

qint16 SatelliteFields::interfaceCode(const QComboBox &C_Interface) {
    return C_Interface.currentText() == QStringLiteral("RS-232") ? 1 : 0;
}

void SatelliteFields::Text3_LostFocus() {
    // An emptied Sat ID means "any satellite": the next answer names it.
    if (w_.Text3->text().isEmpty())
        w_.Text3->setText(QStringLiteral("2047"));
    const std::optional<qint16> satId = acceptedSatId();
    if (!satId)
        return;
    RF1_.Satellites().Item(g_.CurrentSatelliteIndex)->setSatId(*satId);
    view_.EnableSatelliteQueries();
}

void SatelliteFields::C_Interface_LostFocus() {
    const std::optional<qint16> satId = acceptedSatId();
    if (!satId)
        return;
    SatelliteList &satellites = RF1_.Satellites();
    if (interfaceCode() != 1) {
        // RS-485 is a bus: choosing it for one satellite puts the whole list on it.
        const qint32 count = satellites.Count();
        for (qint32 position = 1; position <= count; ++position)
            satellites.Item(toInt16(position))->setInterface(0);
    }
    const SatellitePtr current = satellites.Item(g_.CurrentSatelliteIndex);
    current->setSatId(*satId);
    current->setInterface(interfaceCode());
    view_.EnableSatelliteQueries();
}

void SatelliteFields::Check1_LostFocus() {
    const std::optional<qint16> satId = acceptedSatId();
    if (!satId)
        return;
    const SatellitePtr current = RF1_.Satellites().Item(g_.CurrentSatelliteIndex);
    current->setSatId(*satId);
    current->setInterface(interfaceCode());
    // The grey state counts as active here.
    current->setEnabled(w_.Check1->checkState() != Qt::Unchecked ? 1 : 0);
    view_.EnableSatelliteQueries();
}

bool SatelliteFields::StoreCurrentSatellite() {
    // 17, not 16: the list editor stops at 16 before this is ever reached.
    if (g_.CurrentSatelliteIndex == 17) {
        w_.StatusPanel2->setText(texts_(135));
        return false;
    }
    const QString text = w_.Text3->text();
    // Unlike the focus handlers, 2047 is refused: a satellite must have its own
    // Sat ID before the list moves on.
    if (!IsDigitString(text) || textToInt16(text) >= 2000) {
        w_.Text3->setText(QStringLiteral("9999"));
        w_.StatusPanel2->setText(texts_(134));
        return false;
    }
    const SatellitePtr current = RF1_.Satellites().Item(g_.CurrentSatelliteIndex);
    current->setSatId(textToInt16(text));
    current->setInterface(interfaceCode());
    current->setEnabled(w_.Check1->checkState() != Qt::Unchecked ? 1 : 0);
    return true;
}
