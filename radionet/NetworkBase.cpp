#include "radionet/NetworkBase.h"

NetworkBase::NetworkBase(QObject *parent)
    : RadioNetControl(parent)
    , satellites_(this, *this)
    , devices_(*this) {}

void NetworkBase::SetNotification(bool &sendToPc, qint16 &timeNotify, qint16 &timeGoingOn) {
    logCall(QStringLiteral("SetNotification %1 %2 %3")
                .arg(sendToPc ? QStringLiteral("true") : QStringLiteral("false"))
                .arg(timeNotify)
                .arg(timeGoingOn));
    sendToPc_ = sendToPc;
    timeNotify_ = timeNotify;
    timeGoingOn_ = timeGoingOn;
}

void NetworkBase::GetNotification(bool &sendToPc, qint16 &timeNotify, qint16 &timeGoingOn) {
    logCall(QStringLiteral("GetNotification"));
    sendToPc = sendToPc_;
    timeNotify = timeNotify_;
    timeGoingOn = timeGoingOn_;
}

void NetworkBase::logCall(const QString &entry) {
    if (callLog_.size() >= 200000)
        callLog_.remove(0, 100000);
    callLog_.append(entry);
}
