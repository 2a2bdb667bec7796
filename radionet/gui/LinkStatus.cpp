#include "radionet/gui/LinkStatus.h"

#include "config/Globale.h"
#include "radionet/RadioNetControl.h"
#include "radionet/gui/Pause.h"

#include <QLabel>

LinkStatus::LinkStatus(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1,
                       Pause &pause)
    : w_(w)
    , g_(g)
    , texts_(texts)
    , RF1_(RF1)
    , pause_(pause) {}

QString LinkStatus::QueryLinkStatus() {
    const qint16 s = RF1_.LinkState();
    QString text;
    switch (s) {
    case 0:
        text = texts_(145);
        break;
    case 1:
        text = RF1_.CommPort() + texts_(146);
        break;
    case 2:
        text = RF1_.CommPort() + texts_(146) + texts_(147);
        break;
    case 3:
        text = RF1_.CommPort() + texts_(146) + texts_(154);
        break;
    default:
        // Deliberately the same in both languages.
        text = QStringLiteral("Erreur de Status");
        break;
    }
    if (s >= 0 && s <= 3)
        g_.LastLinkState = s;
    w_.StatusPanel1->setText(text);
    // While an error is pending, panel 2 keeps its text.
    if (g_.NetErrorCode == 0)
        w_.StatusPanel2->setText(texts_(148));
    return text;
}

qint16 LinkStatus::beginMove() {
    // Shown before the pending error is cleared, so panel 2 keeps an error's text.
    QueryLinkStatus();
    const qint16 state = RF1_.LinkState();
    g_.NetErrorCode = 0;
    return state;
}

bool LinkStatus::StartNetwork() {
    const qint16 s = beginMove();
    if (RF1_.Satellites().Count() == 0) {
        w_.StatusPanel2->setText(texts_(152));
    } else if (s == 0) {
        g_.PortOpen = RF1_.OpenPort();
        pause_.run();
        // An error event during the pause means the port is not fit for polling.
        if (g_.NetErrorCode == 0) {
            g_.PollingActive = RF1_.StartPolling();
            pause_.run();
        }
    } else if (s == 1 || s == 3) {
        g_.PollingActive = RF1_.StartPolling();
        pause_.run();
    }
    QueryLinkStatus();
    return RF1_.LinkState() == 2;
}

bool LinkStatus::HaltPolling() {
    const qint16 s = beginMove();
    if (s == 2) {
        g_.PollingActive = !RF1_.StopPolling();
        pause_.run();
    }
    QueryLinkStatus();
    return RF1_.LinkState() == 3;
}

bool LinkStatus::CloseNetwork() {
    const qint16 s = beginMove();
    if (s == 0 || s == 1 || s == 3) {
        // Closed again even when already inactive.
        g_.PortOpen = !RF1_.ClosePort();
        pause_.run();
    } else if (s == 2) {
        g_.PollingActive = !RF1_.StopPolling();
        pause_.run();
        g_.PortOpen = !RF1_.ClosePort();
        pause_.run();
    }
    QueryLinkStatus();
    // Says that the port was already inactive, not that closing worked.
    return s == 0;
}

bool LinkStatus::ReopenPort() {
    beginMove(); // closed and opened whatever the state
    g_.PortOpen = !RF1_.ClosePort();
    pause_.run();
    g_.PortOpen = RF1_.OpenPort();
    pause_.run();
    QueryLinkStatus();
    return RF1_.LinkState() == 1;
}
