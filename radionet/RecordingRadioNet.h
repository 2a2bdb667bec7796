#pragma once

#include "radionet/NetworkLog.h"
#include "radionet/RadioNetControl.h"

#include <memory>
#include <unordered_map>

class RecordingSatellite;
class RecordingSatelliteList;

// Any network, with a recorder at its seam: every call that reaches the network and
// every event it raises goes into its NetworkLog, then on as it was. The network is
// owned (reparented); its satellite objects are handed out wrapped, one wrapper per
// object for as long as the object lives, so that a request made through any of them
// is recorded.
class RecordingRadioNet : public RadioNetControl {
    Q_OBJECT

public:
    explicit RecordingRadioNet(RadioNetControl *network, QObject *parent = nullptr);
    ~RecordingRadioNet() override;

    RadioNetControl &network() { return *network_; }
    NetworkLog &log() { return log_; }
    // Off: calls and events pass straight through, and nothing is recorded.
    void setRecording(bool on) { recording_ = on; }
    bool recording() const { return recording_; }

    QString BaudRate() const override { return network_->BaudRate(); }
    void setBaudRate(const QString &baudRate) override { network_->setBaudRate(baudRate); }
    SatelliteList &Satellites() override;
    TerminalList &Devices() override { return network_->Devices(); }
    bool StartPolling() override {
        return noted(NetworkLog::What::StartPolling, network_->StartPolling());
    }
    bool StopPolling() override {
        return noted(NetworkLog::What::StopPolling, network_->StopPolling());
    }
    QString CommPort() const override { return network_->CommPort(); }
    void setCommPort(const QString &port) override { network_->setCommPort(port); }
    qint16 TimeOut() const override { return network_->TimeOut(); }
    void setTimeOut(qint16 timeOut) override { network_->setTimeOut(timeOut); }
    bool OpenPort() override { return noted(NetworkLog::What::OpenPort, network_->OpenPort()); }
    bool ClosePort() override { return noted(NetworkLog::What::ClosePort, network_->ClosePort()); }
    qint16 LinkState() const override { return network_->LinkState(); }
    qint32 Synchro() const override { return network_->Synchro(); }
    void setSynchro(qint32 synchro) override { network_->setSynchro(synchro); }
    qint16 Timer() const override { return network_->Timer(); }
    void setTimer(qint16 timer) override { network_->setTimer(timer); }
    void SetNotification(bool &sendToPc, qint16 &timeNotify, qint16 &timeGoingOn) override {
        network_->SetNotification(sendToPc, timeNotify, timeGoingOn);
    }
    void GetNotification(bool &sendToPc, qint16 &timeNotify, qint16 &timeGoingOn) override {
        network_->GetNotification(sendToPc, timeNotify, timeGoingOn);
    }
    qint16 Mode() const override { return network_->Mode(); }
    void setMode(qint16 mode) override { network_->setMode(mode); }
    bool Enabled() const override { return network_->Enabled(); }
    void setEnabled(bool enabled) override { network_->setEnabled(enabled); }

private:
    friend class RecordingSatelliteList;
    SatellitePtr wrap(const SatellitePtr &satellite);
    bool noted(NetworkLog::What what, bool done); // a call on the port, and its result

    RadioNetControl *network_;
    NetworkLog log_;
    bool recording_ = true;
    std::unique_ptr<RecordingSatelliteList> satellites_;
    // Kept while their satellite lives: a wrapper remembers what its satellite reported
    // and is told, between the handlers that fetch it anew each time.
    std::unordered_map<const Satellite *, std::shared_ptr<RecordingSatellite>> wrappers_;
};
