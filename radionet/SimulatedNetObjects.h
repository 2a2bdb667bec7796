#pragma once

#include "radionet/RadioNetControl.h"

#include <QPointer>
#include <memory>
#include <vector>

class SimulatedRadioNet;
struct OnAirSatellite;

// The object model of the simulated network: the satellite and terminal objects and
// their lists. Only SimulatedRadioNet creates them.

class SimulatedSatellite : public Satellite,
                           public std::enable_shared_from_this<SimulatedSatellite> {
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

    void Detect() override;
    void RequestConfig() override;
    void Configure() override;
    void RequestStatus() override;

private:
    friend class SimulatedSatelliteList;
    friend class SimulatedRadioNet;

    SimulatedSatellite(SimulatedRadioNet *net, qint16 satId);

    void takeConfig(const OnAirSatellite &onAir);
    void takeStatus(qint16 rxFree, qint16 txFree);

    // Weak: a satellite object may outlive the network that made it; its requests
    // then go nowhere.
    QPointer<SimulatedRadioNet> net_;
    qint16 satId_;
    qint32 enabled_ = 0;
    qint16 rfVersionMajor_ = 0;
    qint16 rfVersionMinor_ = 0;
    qint16 interface_ = 0;
    qint16 rxFree_ = 0;
    qint16 txFree_ = 0;
    qint16 newSatId_ = 0;
};

class SimulatedSatelliteList : public SatelliteList {
public:
    explicit SimulatedSatelliteList(SimulatedRadioNet &net)
        : net_(net) {}

    SatellitePtr Item(qint16 position) const override;
    SatellitePtr Add(qint16 satId) override;
    void Remove(qint16 satId) override;
    qint32 Count() const override { return static_cast<qint32>(items_.size()); }
    SatellitePtr ItemById(qint16 satId) const override;
    void Clear() override;

private:
    using Items = std::vector<std::shared_ptr<SimulatedSatellite>>;
    // The first satellite with that Sat ID; none raises the list's error.
    Items::const_iterator firstWithId(qint16 satId) const;

    SimulatedRadioNet &net_;
    Items items_;
};

class SimulatedTerminal : public DeclaredTerminal {
public:
    explicit SimulatedTerminal(qint16 number)
        : number_(number) {}
    qint16 Number() const override { return number_; }

private:
    qint16 number_;
};

class SimulatedTerminalList : public TerminalList {
public:
    explicit SimulatedTerminalList(SimulatedRadioNet &net)
        : net_(net) {}

    DeclaredTerminalPtr Item(qint16 position) const override;
    DeclaredTerminalPtr Add(qint16 number) override;
    qint32 Count() const override { return static_cast<qint32>(items_.size()); }
    void Clear() override;

private:
    SimulatedRadioNet &net_;
    std::vector<DeclaredTerminalPtr> items_;
};
