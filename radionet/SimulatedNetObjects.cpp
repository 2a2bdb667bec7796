#include "radionet/SimulatedNetObjects.h"

#include "platform/RuntimeError.h"
#include "radionet/SimulatedRadioNet.h"

#include <algorithm>

SimulatedSatellite::SimulatedSatellite(SimulatedRadioNet *net, qint16 satId)
    : net_(net)
    , satId_(satId) {}

void SimulatedSatellite::Detect() {
    if (net_)
        net_->request(SimulatedRadioNet::Request::Detect, shared_from_this());
}

void SimulatedSatellite::RequestConfig() {
    if (net_)
        net_->request(SimulatedRadioNet::Request::RequestConfig, shared_from_this());
}

void SimulatedSatellite::Configure() {
    if (net_)
        net_->request(SimulatedRadioNet::Request::Configure, shared_from_this());
}

void SimulatedSatellite::RequestStatus() {
    if (net_)
        net_->request(SimulatedRadioNet::Request::RequestStatus, shared_from_this());
}

void SimulatedSatellite::takeConfig(const OnAirSatellite &onAir) {
    interface_ = onAir.interfaceCode;
    enabled_ = onAir.enabled;
    rfVersionMajor_ = onAir.rfVersionMajor;
    rfVersionMinor_ = onAir.rfVersionMinor;
}

void SimulatedSatellite::takeStatus(qint16 rxFree, qint16 txFree) {
    rxFree_ = rxFree;
    txFree_ = txFree;
}

SatellitePtr SimulatedSatelliteList::Item(qint16 position) const {
    if (position < 1 || position > Count())
        throw RuntimeError::subscriptOutOfRange();
    return items_[static_cast<std::size_t>(position - 1)];
}

SatellitePtr SimulatedSatelliteList::Add(qint16 satId) {
    net_.log(QStringLiteral("Satellites.Add %1").arg(satId));
    // Not make_shared: the constructor is private to the list.
    std::shared_ptr<SimulatedSatellite> satellite(new SimulatedSatellite(&net_, satId));
    items_.push_back(satellite);
    return satellite;
}

void SimulatedSatelliteList::Remove(qint16 satId) {
    net_.log(QStringLiteral("Satellites.Remove %1").arg(satId));
    items_.erase(firstWithId(satId));
}

SatellitePtr SimulatedSatelliteList::ItemById(qint16 satId) const {
    return *firstWithId(satId);
}

SimulatedSatelliteList::Items::const_iterator
SimulatedSatelliteList::firstWithId(qint16 satId) const {
    const auto it = std::find_if(items_.begin(), items_.end(),
                                 [satId](const auto &s) { return s->SatId() == satId; });
    if (it == items_.end())
        throw RuntimeError::subscriptOutOfRange();
    return it;
}

void SimulatedSatelliteList::Clear() {
    net_.log(QStringLiteral("Satellites.Clear"));
    items_.clear();
}

DeclaredTerminalPtr SimulatedTerminalList::Item(qint16 position) const {
    if (position < 1 || position > Count())
        throw RuntimeError::subscriptOutOfRange();
    return items_[static_cast<std::size_t>(position - 1)];
}

DeclaredTerminalPtr SimulatedTerminalList::Add(qint16 number) {
    net_.log(QStringLiteral("Devices.Add %1").arg(number));
    items_.push_back(std::make_shared<SimulatedTerminal>(number));
    return items_.back();
}

void SimulatedTerminalList::Clear() {
    net_.log(QStringLiteral("Devices.Clear"));
    items_.clear();
}
