#include "radionet/NetObjects.h"

#include "platform/RuntimeError.h"

#include <algorithm>

NetSatellite::NetSatellite(QObject *network, NetObjectHost *host, qint16 satId)
    : network_(network)
    , host_(host)
    , satId_(satId) {}

void NetSatellite::send(NetObjectHost::Request kind) {
    if (network_)
        host_->request(kind, shared_from_this());
}

void NetSatellite::takeConfig(qint16 interfaceCode, qint32 enabled, qint16 major, qint16 minor) {
    interface_ = interfaceCode;
    enabled_ = enabled;
    rfVersionMajor_ = major;
    rfVersionMinor_ = minor;
}

void NetSatellite::takeStatus(qint16 rxFree, qint16 txFree) {
    rxFree_ = rxFree;
    txFree_ = txFree;
}

SatellitePtr NetSatelliteList::Item(qint16 position) const {
    if (position < 1 || position > Count())
        throw RuntimeError::subscriptOutOfRange();
    return items_[static_cast<std::size_t>(position - 1)];
}

SatellitePtr NetSatelliteList::Add(qint16 satId) {
    host_.logCall(QStringLiteral("Satellites.Add %1").arg(satId));
    // Not make_shared: the constructor is private to the list.
    std::shared_ptr<NetSatellite> satellite(new NetSatellite(network_, &host_, satId));
    items_.push_back(satellite);
    return satellite;
}

void NetSatelliteList::Remove(qint16 satId) {
    host_.logCall(QStringLiteral("Satellites.Remove %1").arg(satId));
    items_.erase(firstWithId(satId));
}

SatellitePtr NetSatelliteList::ItemById(qint16 satId) const {
    return *firstWithId(satId);
}

NetSatelliteList::Items::const_iterator NetSatelliteList::firstWithId(qint16 satId) const {
    const auto it = std::find_if(items_.begin(), items_.end(),
                                 [satId](const auto &s) { return s->SatId() == satId; });
    if (it == items_.end())
        throw RuntimeError::subscriptOutOfRange();
    return it;
}

void NetSatelliteList::Clear() {
    host_.logCall(QStringLiteral("Satellites.Clear"));
    items_.clear();
}

DeclaredTerminalPtr NetTerminalList::Item(qint16 position) const {
    if (position < 1 || position > Count())
        throw RuntimeError::subscriptOutOfRange();
    return items_[static_cast<std::size_t>(position - 1)];
}

DeclaredTerminalPtr NetTerminalList::Add(qint16 number) {
    host_.logCall(QStringLiteral("Devices.Add %1").arg(number));
    items_.push_back(std::make_shared<NetTerminal>(number));
    return items_.back();
}

void NetTerminalList::Clear() {
    host_.logCall(QStringLiteral("Devices.Clear"));
    items_.clear();
}
