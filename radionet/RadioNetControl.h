#pragma once

#include <QObject>
#include <QString>
#include <QtGlobal>
#include <memory>

// The radio network control's contract. Positions are 1-based; a bad position or
// an unknown identifier raises RuntimeError. Satellite and terminal objects are
// shared: a handler that holds one keeps it alive even if the list drops it
// meanwhile (a pause lets other handlers run).

class Satellite {
public:
    virtual ~Satellite() = default;

    virtual qint16 SatId() const = 0;
    virtual void setSatId(qint16 satId) = 0;
    virtual qint32 Enabled() const = 0;          // read as Long
    virtual void setEnabled(qint16 enabled) = 0; // written as Integer
    virtual qint16 RfVersionMajor() const = 0;
    virtual qint16 RfVersionMinor() const = 0;
    virtual qint16 Interface() const = 0; // 1 = RS-232, anything else RS-485
    virtual void setInterface(qint16 code) = 0;
    virtual qint16 RxFree() const = 0; // kilobytes
    virtual qint16 TxFree() const = 0; // kilobytes
    virtual void setNewSatId(qint16 newSatId) = 0;

    // Requests: they return at once; the answer comes later as an event.
    virtual void Detect() = 0;
    virtual void RequestConfig() = 0;
    virtual void Configure() = 0;
    virtual void RequestStatus() = 0;
};
using SatellitePtr = std::shared_ptr<Satellite>;

class SatelliteList {
public:
    virtual ~SatelliteList() = default;
    virtual SatellitePtr Item(qint16 position) const = 0;
    virtual SatellitePtr Add(qint16 satId) = 0; // appends
    virtual void Remove(qint16 satId) = 0;      // first match
    virtual qint32 Count() const = 0;
    virtual SatellitePtr ItemById(qint16 satId) const = 0; // first match
    virtual void Clear() = 0;
};

class DeclaredTerminal {
public:
    virtual ~DeclaredTerminal() = default;
    virtual qint16 Number() const = 0;
};
using DeclaredTerminalPtr = std::shared_ptr<DeclaredTerminal>;

class TerminalList {
public:
    virtual ~TerminalList() = default;
    virtual DeclaredTerminalPtr Item(qint16 position) const = 0;
    virtual DeclaredTerminalPtr Add(qint16 number) = 0;
    virtual qint32 Count() const = 0;
    virtual void Clear() = 0;
};

class RadioNetControl : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    ~RadioNetControl() override = default;

    virtual QString BaudRate() const = 0;
    virtual void setBaudRate(const QString &baudRate) = 0;
    virtual SatelliteList &Satellites() = 0;
    virtual TerminalList &Devices() = 0;
    virtual bool StartPolling() = 0;
    virtual bool StopPolling() = 0;
    virtual QString CommPort() const = 0;
    virtual void setCommPort(const QString &port) = 0;
    virtual qint16 TimeOut() const = 0;
    virtual void setTimeOut(qint16 timeOut) = 0;
    virtual bool OpenPort() = 0;
    virtual bool ClosePort() = 0;
    // 0 port inactive, 1 open, 2 open and polling, 3 open and polling halted.
    virtual qint16 LinkState() const = 0;
    virtual qint32 Synchro() const = 0;
    virtual void setSynchro(qint32 synchro) = 0;
    virtual qint16 Timer() const = 0;
    virtual void setTimer(qint16 timer) = 0;
    virtual void SetNotification(bool &sendToPc, qint16 &timeNotify, qint16 &timeGoingOn) = 0;
    virtual void GetNotification(bool &sendToPc, qint16 &timeNotify, qint16 &timeGoingOn) = 0;
    virtual qint16 Mode() const = 0;
    virtual void setMode(qint16 mode) = 0;
    virtual bool Enabled() const = 0;
    virtual void setEnabled(bool enabled) = 0;

signals:
    // Always delivered later through the event loop, never from inside the call
    // that caused them.
    void NetError(qint16 ErrNum, const QString &Description);
    void SatelliteAnswered(qint16 SatId, const QString &Identity);
    void ConfigReceived(qint16 SatId);
    void StatusReceived(qint16 SatId);
};
