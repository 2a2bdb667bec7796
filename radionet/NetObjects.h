#pragma once

#include "radionet/RadioNetControl.h"

#include <QPointer>
#include <memory>
#include <vector>

class NetSatellite;

// What the satellite and terminal objects need of the network that made them: a way
// to send a satellite's request, and a place to note each call on a list.
class NetObjectHost {
public:
    enum class Request { Detect, RequestConfig, RequestStatus, Configure };

    virtual void request(Request kind, const std::shared_ptr<NetSatellite> &satellite) = 0;
    virtual void logCall(const QString &entry) = 0;

protected:
    ~NetObjectHost() = default;
};

// The object model shared by the networks: the satellite and terminal objects and
// their lists. Only a network creates them.
class NetSatellite : public Satellite, public std::enable_shared_from_this<NetSatellite> {
public:
    qint16 SatId() const override { return satId_; }
    void setSatId(qint16 satId) override { satId_ = satId; }
    qint32 Enabled() const override { return enabled_; }
    void setEnabled(qint16 enabled) override { enabled_ = enabled; }
    qint16 RfVersionMajor() const override { return rfVersionMajor_; }
    qint16 RfVersionMinor() const override { return rfVersionMinor_; }
    qint16 Interface() const override { return interface_; }
    void setInterface(qint16 code) override { interface_ = code; }
    qint16 RxFree() const override { return rxFree_; }
    qint16 TxFree() const override { return txFree_; }
    void setNewSatId(qint16 newSatId) override { newSatId_ = newSatId; }

    void Detect() override { send(NetObjectHost::Request::Detect); }
    void RequestConfig() override { send(NetObjectHost::Request::RequestConfig); }
    void Configure() override { send(NetObjectHost::Request::Configure); }
    void RequestStatus() override { send(NetObjectHost::Request::RequestStatus); }

    // For the network: what Configure sends, and the answers it copies in.
    qint16 newSatId() const { return newSatId_; }
    void takeConfig(qint16 interfaceCode, qint32 enabled, qint16 major, qint16 minor);
    void takeStatus(qint16 rxFree, qint16 txFree);

private:
    friend class NetSatelliteList;
    NetSatellite(QObject *network, NetObjectHost *host, qint16 satId);
    void send(NetObjectHost::Request kind);

    // Weak: a satellite object may outlive the network that made it; its requests
    // then go nowhere.
    QPointer<QObject> network_;
    NetObjectHost *host_;
    qint16 satId_;
    qint32 enabled_ = 0;
    qint16 rfVersionMajor_ = 0;
    qint16 rfVersionMinor_ = 0;
    qint16 interface_ = 0;
    qint16 rxFree_ = 0;
    qint16 txFree_ = 0;
    qint16 newSatId_ = 0;
};

class NetSatelliteList : public SatelliteList {
public:
    // network is the QObject of host: requests stop when it is gone.
    NetSatelliteList(QObject *network, NetObjectHost &host)
        : network_(network)
        , host_(host) {}

    SatellitePtr Item(qint16 position) const override;
    SatellitePtr Add(qint16 satId) override;
    void Remove(qint16 satId) override;
    qint32 Count() const override { return static_cast<qint32>(items_.size()); }
    SatellitePtr ItemById(qint16 satId) const override;
    void Clear() override;

private:
    using Items = std::vector<std::shared_ptr<NetSatellite>>;
    // The first satellite with that Sat ID; none raises the list's error.
    Items::const_iterator firstWithId(qint16 satId) const;

    QObject *network_;
    NetObjectHost &host_;
    Items items_;
};

class NetTerminal : public DeclaredTerminal {
public:
    explicit NetTerminal(qint16 number)
        : number_(number) {}
    qint16 Number() const override { return number_; }

private:
    qint16 number_;
};

class NetTerminalList : public TerminalList {
public:
    explicit NetTerminalList(NetObjectHost &host)
        : host_(host) {}

    DeclaredTerminalPtr Item(qint16 position) const override;
    DeclaredTerminalPtr Add(qint16 number) override;
    qint32 Count() const override { return static_cast<qint32>(items_.size()); }
    void Clear() override;

private:
    NetObjectHost &host_;
    std::vector<DeclaredTerminalPtr> items_;
};
