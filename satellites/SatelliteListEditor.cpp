#include "satellites/SatelliteListEditor.h"

#include "config/Globale.h"
#include "platform/Numeric.h"
#include "radionet/RadioNetControl.h"
#include "radionet/gui/LinkStatus.h"
#include "satellites/SatelliteFields.h"
#include "satellites/SatelliteView.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

SatelliteListEditor::SatelliteListEditor(Widgets w, Globale &g, const Texts &texts,
                                         RadioNetControl &RF1, SatelliteView &view,
                                         SatelliteFields &fields, LinkStatus &link)
    : w_(w)
    , g_(g)
    , texts_(texts)
    , RF1_(RF1)
    , view_(view)
    , fields_(fields)
    , link_(link) {}

void SatelliteListEditor::b_Insert_Click() {
    // Only the position is tested: the 16th place refuses even in a shorter list.
    if (g_.CurrentSatelliteIndex == 16) {
        w_.StatusPanel2->setText(texts_(135));
        return;
    }
    if (!fields_.StoreCurrentSatellite())
        return;
    g_.CurrentSatelliteIndex = add16(g_.CurrentSatelliteIndex, 1);
    // The proposed Sat ID of the new satellite is the previous one plus one.
    const qint16 proposed = toInt16(leadingNumber(w_.Text3->text()) + 1);
    w_.Text3->setText(QString::number(proposed));
    RF1_.Satellites().Add(proposed);
    w_.StatusPanel2->setText(texts_(136) + w_.Text3->text());
    view_.ShowPosition();
    view_.ClearSatelliteView();
}

void SatelliteListEditor::b_Supp_Click() {
    auto &satellites = RF1_.Satellites();
    if (satellites.Count() == 1)
        return; // the last satellite is never removed
    satellites.Remove(satellites.Item(g_.CurrentSatelliteIndex)->SatId());
    // The field's text, not the removed Sat ID.
    w_.StatusPanel2->setText(texts_(137) + w_.Text3->text());
    // From the first place the next satellite moves up into it.
    if (g_.CurrentSatelliteIndex != 1)
        g_.CurrentSatelliteIndex = sub16(g_.CurrentSatelliteIndex, 1);
    const qint16 satId = satellites.Item(g_.CurrentSatelliteIndex)->SatId();
    view_.ClearSatelliteView();
    view_.ShowSatellite(satId);
}

void SatelliteListEditor::b_ClearAll_Click() {
    g_.CurrentSatelliteIndex = 0;
    RF1_.Satellites().Clear();
    view_.ClearSatelliteView();
    // The list always keeps one satellite to edit.
    RF1_.Satellites().Add(0);
    g_.CurrentSatelliteIndex = 1;
    RF1_.Satellites().Item(1)->setInterface(1);
    view_.ShowSatellite(0);
}

void SatelliteListEditor::moveTo(int step) {
    if (!fields_.StoreCurrentSatellite())
        return;
    g_.CurrentSatelliteIndex = add16(g_.CurrentSatelliteIndex, qint16(step));
    const qint16 satId = RF1_.Satellites().Item(g_.CurrentSatelliteIndex)->SatId();
    view_.ClearSatelliteView();
    view_.ShowSatellite(satId);
    // Enabled again when this satellite's status arrives.
    w_.b_Config->setEnabled(false);
    link_.HaltPolling();
}

void SatelliteListEditor::b_Next_antenne_Click() {
    const qint32 count = RF1_.Satellites().Count();
    if (g_.CurrentSatelliteIndex + 1 <= count && g_.CurrentSatelliteIndex < 16)
        moveTo(+1);
}

void SatelliteListEditor::b_Prev_antenne_Click() {
    if (RF1_.Satellites().Count() != 0 && g_.CurrentSatelliteIndex >= 2)
        moveTo(-1);
}
