#pragma once

#include "platform/OwnTexts.h"
#include "radionet/NetObjects.h"
#include "radionet/RadioNetControl.h"

#include <QStringList>

// What every network of ours holds alike: the link parameters, the notification
// parameters, the satellite and terminal lists, and the log of calls made on them.
// A network adds the port, the polling and the way its requests reach the air.
class NetworkBase : public RadioNetControl, protected NetObjectHost {
    Q_OBJECT

public:
    explicit NetworkBase(QObject *parent = nullptr);

    QString BaudRate() const override { return baudRate_; }
    void setBaudRate(const QString &baudRate) override { baudRate_ = baudRate; }
    SatelliteList &Satellites() override { return satellites_; }
    TerminalList &Devices() override { return devices_; }
    QString CommPort() const override { return commPort_; }
    void setCommPort(const QString &port) override { commPort_ = port; }
    qint16 TimeOut() const override { return timeOut_; }
    void setTimeOut(qint16 timeOut) override { timeOut_ = timeOut; }
    qint32 Synchro() const override { return synchro_; }
    void setSynchro(qint32 synchro) override { synchro_ = synchro; }
    qint16 Timer() const override { return timer_; }
    void setTimer(qint16 timer) override { timer_ = timer; }
    void SetNotification(bool &sendToPc, qint16 &timeNotify, qint16 &timeGoingOn) override;
    void GetNotification(bool &sendToPc, qint16 &timeNotify, qint16 &timeGoingOn) override;
    qint16 Mode() const override { return mode_; }
    void setMode(qint16 mode) override { mode_ = mode; }
    bool Enabled() const override { return enabled_; }
    void setEnabled(bool enabled) override { enabled_ = enabled; }

    // The language of the descriptions its NetError events carry.
    void setTextLanguage(OwnTexts::Language language) { language_ = language; }

    // Every method call on the control and its objects, in order.
    QStringList callLog() const { return callLog_; }
    void clearCallLog() { callLog_.clear(); }

protected:
    template <typename... Args> QString text(const char *key, Args &&...args) const {
        return texts_(language_, key, std::forward<Args>(args)...);
    }

    // A log, not a leak: past 200,000 entries the oldest half goes.
    void logCall(const QString &entry) override;

private:
    QString baudRate_ = QStringLiteral("38400");
    QString commPort_ = QStringLiteral("COM1");
    qint16 timeOut_ = 100;
    qint16 timer_ = 100;
    qint32 synchro_ = 1;
    qint16 mode_ = 0;
    bool enabled_ = true;
    bool sendToPc_ = true;
    qint16 timeNotify_ = 1;
    qint16 timeGoingOn_ = 10;

    OwnTexts texts_;
    OwnTexts::Language language_ = OwnTexts::English;
    NetSatelliteList satellites_;
    NetTerminalList devices_;
    QStringList callLog_;
};
