#include "radionet/gui/TestMode.h"

#include "config/Globale.h"
#include "platform/Numeric.h"
#include "platform/gui/FlexGrid.h"
#include "radionet/RadioNetControl.h"
#include "radionet/gui/LinkStatus.h"
#include "radionet/gui/Pause.h"
#include "satellites/SatelliteFields.h"

#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>

TestMode::TestMode(Widgets w, Globale &g, RadioNetControl &RF1, SatelliteFields &fields,
                   LinkStatus &link, Pause &pause)
    : w_(w)
    , g_(g)
    , RF1_(RF1)
    , fields_(fields)
    , link_(link)
    , pause_(pause) {}

void TestMode::Onglet1_Click(int /*PreviousTab*/) {
    g_.NetErrorCode = 0;
    // What is being edited goes into the satellite before the link changes; a
    // refusal does not stop the tab change.
    fields_.StoreCurrentSatellite();
    switch (w_.Onglet1->currentIndex()) {
    case 0:
        g_.RequestMode = 0;
        w_.Timer2->stop();
        link_.HaltPolling();
        link_.CloseNetwork();
        break;
    case 1:
        g_.RequestMode = 0;
        w_.Timer2->stop();
        w_.b_Config->setEnabled(false); // until a status answer completes a read-back
        link_.ReopenPort();
        break;
    case 2:
        fillTestGrid();
        pause_.run();
        link_.StartNetwork();
        break;
    default:
        break;
    }
    w_.StatusPanel1->setText(link_.QueryLinkStatus());
}

void TestMode::fillTestGrid() {
    FlexGrid::setRedraw(w_.MFG2, false);
    const auto &satellites = RF1_.Satellites();
    if (satellites.Count() <= 0)
        return; // redrawing stays off, as designed
    const qint16 n = toInt16(satellites.Count());
    for (int i = 1; i <= n; ++i) {
        FlexGrid::setText(w_.MFG2, i, 0, QString::number(satellites.Item(qint16(i))->SatId()));
        FlexGrid::setText(w_.MFG2, i, 1, QStringLiteral("  Nothing"));
        FlexGrid::setText(w_.MFG2, i, 2, QString());
    }
    FlexGrid::setRedraw(w_.MFG2, true);
    FlexGrid::refresh(w_.MFG2);
}

void TestMode::b_Debut_test_Click() {
    w_.Timer2->start();
}

void TestMode::b_Fin_Test_Click() {
    w_.Timer2->stop();
    // RequestMode stays 4: answers still on their way keep updating their rows.
    FlexGrid::setRedraw(w_.MFG2, false);
}

void TestMode::Timer2_Timer() {
    const auto &satellites = RF1_.Satellites();
    if (satellites.Count() < 1)
        return;
    TestIndex = add16(TestIndex, 1);
    if (TestIndex > satellites.Count())
        TestIndex = 1;
    const SatellitePtr satellite = satellites.Item(TestIndex);
    FlexGrid::setText(w_.MFG2, TestIndex, 1, QStringLiteral("  Attempt"));
    // While an error is pending the row says "Attempt" but nothing is sent.
    if (g_.NetErrorCode == 0) {
        g_.RequestMode = 4;
        satellite->RequestConfig();
    }
}
