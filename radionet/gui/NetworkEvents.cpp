#include "radionet/gui/NetworkEvents.h"

#include "config/Globale.h"
#include "platform/Numeric.h"
#include "platform/gui/FlexGrid.h"
#include "radionet/RadioNetControl.h"
#include "radionet/gui/LinkStatus.h"
#include "satellites/SatelliteView.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

namespace {
// An identifier field holding 2047 stands for whichever satellite answers.
constexpr double AnySatellite = 2047;
} // namespace

NetworkEvents::NetworkEvents(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1,
                             LinkStatus &link, SatelliteView &view)
    : w_(w)
    , g_(g)
    , texts_(texts)
    , RF1_(RF1)
    , link_(link)
    , view_(view) {}

double NetworkEvents::shownSatId() const {
    return leadingNumber(w_.Text3->text());
}

void NetworkEvents::setValue(int row, const QString &text) {
    FlexGrid::setText(w_.MFG1, row, 1, text);
}

void NetworkEvents::RF1_NetError(qint16 ErrNum, const QString &Description) {
    g_.NetErrorCode = ErrNum;
    w_.StatusPanel2->setText(Description + QStringLiteral(" Error n.") + QString::number(ErrNum));
    w_.StatusPanel1->setText(link_.QueryLinkStatus());
    view_.ClearSatelliteView();
}

void NetworkEvents::RF1_SatelliteAnswered(qint16 SatId, const QString &Identity) {
    const SatellitePtr current = RF1_.Satellites().Item(g_.CurrentSatelliteIndex);
    const double shown = shownSatId();
    if (shown == SatId || shown == AnySatellite) {
        if (Identity.startsWith(QStringLiteral("QX"))) {
            w_.Text3->setText(QString::number(SatId));
            current->setSatId(SatId);
            g_.LastSatId = SatId;
            view_.PrepareValueColumn();
            setValue(0, QString::number(SatId));
        } else {
            // Not a satellite of ours: its identifier is not shown.
            view_.PrepareValueColumn();
            setValue(0, QString());
        }
        for (int row = 1; row <= 5; ++row)
            setValue(row, QString());
        FlexGrid::refresh(w_.MFG1);
    }
    // Every answer continues the chain, also one that is not shown.
    g_.RequestMode = 1;
    current->RequestConfig();
}

void NetworkEvents::RF1_ConfigReceived(qint16 SatId) {
    if (g_.RequestMode == 1) {
        const SatellitePtr current = RF1_.Satellites().Item(g_.CurrentSatelliteIndex);
        const double shown = shownSatId();
        if (shown != AnySatellite && shown != SatId)
            return;
        if (shownSatId() == AnySatellite) {
            w_.Text3->setText(QString::number(SatId));
            current->setSatId(SatId);
        }
        g_.LastSatId = SatId;
        FlexGrid::setRedraw(w_.MFG1, false);
        view_.PrepareValueColumn();
        setValue(0, QString::number(SatId));
        setValue(1,
                 current->Interface() == 1 ? QStringLiteral("RS-232") : QStringLiteral("RS-485"));
        setValue(2, QString::number(current->Enabled()));
        setValue(3, QString::number(current->RfVersionMajor()) + u'.' +
                        QString::number(current->RfVersionMinor()));
        setValue(4, QString());
        setValue(5, QString());
        FlexGrid::setRedraw(w_.MFG1, true);
        FlexGrid::refresh(w_.MFG1);
        g_.RequestMode = 1;
        current->RequestStatus();
    } else if (g_.RequestMode == 4) {
        const qint16 position = FindSatelliteIndex(SatId);
        if (position > 0)
            RF1_.Satellites().Item(position)->RequestStatus();
    }
}

void NetworkEvents::RF1_StatusReceived(qint16 SatId) {
    if (g_.RequestMode == 1) {
        const SatellitePtr current = RF1_.Satellites().Item(g_.CurrentSatelliteIndex);
        // No "any satellite" here, unlike the two answers before it in the chain.
        if (shownSatId() != SatId)
            return;
        w_.Text3->setText(QString::number(SatId));
        current->setSatId(SatId);
        FlexGrid::setRedraw(w_.MFG1, false);
        view_.PrepareValueColumn();
        setValue(0, QString::number(SatId));
        setValue(4, QString::number(current->RxFree()) + QStringLiteral(" Ko"));
        setValue(5, QString::number(current->TxFree()) + QStringLiteral(" Ko"));
        FlexGrid::setRedraw(w_.MFG1, true);
        w_.StatusPanel2->setText(texts_(148));
        w_.StatusPanel1->setText(link_.QueryLinkStatus());
        w_.b_Config->setEnabled(true);
        g_.NetErrorCode = 0;
        FlexGrid::refresh(w_.MFG1);
    } else if (g_.RequestMode == 4) {
        const qint16 position = FindSatelliteIndex(SatId);
        if (position < 1)
            return;
        const SatellitePtr satellite = RF1_.Satellites().Item(position);
        FlexGrid::setRedraw(w_.MFG2, false);
        FlexGrid::setText(w_.MFG2, position, 1, QStringLiteral("     OK"));
        // Built on the literal "Version RF:" in both languages.
        FlexGrid::setText(w_.MFG2, position, 2,
                          QStringLiteral("Version RF:%1.%2 Mem Free:%3 Ko")
                              .arg(satellite->RfVersionMajor())
                              .arg(satellite->RfVersionMinor())
                              .arg(satellite->RxFree()));
        FlexGrid::setRedraw(w_.MFG2, true);
        FlexGrid::refresh(w_.MFG2);
        // Each answering satellite is polled again for as long as the test mode lasts.
        satellite->RequestStatus();
    }
}

qint16 NetworkEvents::FindSatelliteIndex(qint16 SatId) {
    const auto &satellites = RF1_.Satellites();
    if (satellites.Count() < 1)
        return 0;
    const qint16 n = toInt16(satellites.Count());
    qint16 result = 0;
    // No early stop: with a repeated Sat ID the last one wins.
    for (int i = 1; i <= n; ++i) {
        if (satellites.Item(qint16(i))->SatId() == SatId)
            result = qint16(i);
    }
    return result;
}
