#include "satellites/SatelliteView.h"

#include "config/Globale.h"
#include "platform/gui/FlexGrid.h"
#include "radionet/RadioNetControl.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

SatelliteView::SatelliteView(Widgets w, const Globale &g, RadioNetControl &RF1)
    : w_(w)
    , g_(g)
    , RF1_(RF1) {}

void SatelliteView::ShowSatellite(qint16 satId) {
    // Looked up by Sat ID, not by position.
    const SatellitePtr satellite = RF1_.Satellites().ItemById(satId);
    const qint16 shownId = satellite->SatId();
    w_.Text3->setText(QString::number(shownId));
    if (shownId == 9999)
        DisableSatelliteQueries();
    else
        EnableSatelliteQueries();
    w_.C_Interface->setCurrentText(satellite->Interface() == 1 ? QStringLiteral("RS-232")
                                                               : QStringLiteral("RS-485"));
    w_.Check1->setCheckState(satellite->Enabled() != 0 ? Qt::Checked : Qt::Unchecked);
    ShowPosition();
}

void SatelliteView::ClearSatelliteView() {
    PrepareValueColumn();
    for (int row = 0; row <= 5; ++row)
        FlexGrid::setText(w_.MFG1, row, 1, QString());
    FlexGrid::refresh(w_.MFG1);
}

void SatelliteView::EnableSatelliteQueries() {
    w_.b_GetConfig->setEnabled(true);
    w_.b_Alive->setEnabled(true);
}

void SatelliteView::DisableSatelliteQueries() {
    w_.b_GetConfig->setEnabled(false);
    w_.b_Alive->setEnabled(false);
}

void SatelliteView::ShowPosition() {
    w_.l_index->setText(
        QStringLiteral("%1/%2").arg(g_.CurrentSatelliteIndex).arg(RF1_.Satellites().Count()));
}

void SatelliteView::PrepareValueColumn() {
    FlexGrid::setColAlignment(w_.MFG1, 1, 3);
}
