#include "radionet/SimulatedRadioNet.h"

#include "radionet/Scenario.h"

#include <utility>

SimulatedRadioNet::SimulatedRadioNet(QObject *parent)
    : NetworkBase(parent)
    , availablePorts_{QStringLiteral("COM1"), QStringLiteral("COM2"), QStringLiteral("COM3"),
                      QStringLiteral("COM4")}
    , later_(this) {}

qint16 SimulatedRadioNet::LinkState() const {
    return linkStateOverride_.value_or(linkState_);
}

bool SimulatedRadioNet::OpenPort() {
    logCall(QStringLiteral("OpenPort"));
    if (linkState_ != 0)
        return true;
    if (!availablePorts_.contains(CommPort())) {
        const QString text = QStringLiteral("Port %1 not available").arg(CommPort());
        raiseNetError(PortNotAvailableError, text);
        return false;
    }
    linkState_ = 1;
    return true;
}

bool SimulatedRadioNet::ClosePort() {
    logCall(QStringLiteral("ClosePort"));
    linkState_ = 0;
    return true;
}

bool SimulatedRadioNet::StartPolling() {
    logCall(QStringLiteral("StartPolling"));
    if (linkState_ == 0) {
        raiseNetError(PortNotOpenError, QStringLiteral("Port not open"));
        return false;
    }
    linkState_ = 2;
    return true;
}

bool SimulatedRadioNet::StopPolling() {
    logCall(QStringLiteral("StopPolling"));
    if (linkState_ == 0)
        return false;
    if (linkState_ == 2)
        linkState_ = 3;
    return true;
}

void SimulatedRadioNet::putOnAir(const OnAirSatellite &satellite) {
    // A satellite given by the scenario reports exactly its own figures.
    air_.put(satellite);
}

void SimulatedRadioNet::removeFromAir(qint16 satId) {
    air_.remove(satId);
}

void SimulatedRadioNet::clearAir() {
    air_.clear();
}

std::optional<OnAirSatellite> SimulatedRadioNet::onAir(qint16 satId) const {
    return air_.find(satId);
}

void SimulatedRadioNet::setAvailablePorts(const QStringList &ports) {
    availablePorts_ = ports;
}

void SimulatedRadioNet::setAnswerDelayMs(int delayMs) {
    answerDelayMs_ = std::max(0, delayMs);
}

void SimulatedRadioNet::loadScenario(const Scenario &scenario, const QString &source) {
    air_ = scenario.air();
    setAnswerDelayMs(scenario.answerDelayMs);
    scenarioSource_ = source;
    scenarioProblem_.clear();
}

void SimulatedRadioNet::injectNetError(qint16 errNum, const QString &description) {
    injectedError_ = InjectedError{errNum, description};
}

void SimulatedRadioNet::setLinkStateOverride(std::optional<qint16> state) {
    linkStateOverride_ = state;
}

void SimulatedRadioNet::raiseNetError(qint16 errNum, const QString &description) {
    later_.post(0, [this, errNum, description] { emit NetError(errNum, description); });
}

void SimulatedRadioNet::raiseSatelliteAnswered(qint16 satId, const QString &identity) {
    later_.post(0, [this, satId, identity] { emit SatelliteAnswered(satId, identity); });
}

void SimulatedRadioNet::raiseConfigReceived(qint16 satId) {
    later_.post(0, [this, satId] { emit ConfigReceived(satId); });
}

void SimulatedRadioNet::raiseStatusReceived(qint16 satId) {
    later_.post(0, [this, satId] { emit StatusReceived(satId); });
}

void SimulatedRadioNet::request(Request kind, const std::shared_ptr<NetSatellite> &satellite) {
    // The radio message carries the address and settings of the moment it is sent.
    const qint16 address = satellite->SatId();
    const qint16 newSatId = satellite->newSatId();
    const qint16 interfaceCode = satellite->Interface();
    const qint32 enabled = satellite->Enabled();

    switch (kind) {
    case Request::Detect:
        logCall(QStringLiteral("Detect %1").arg(address));
        break;
    case Request::RequestConfig:
        logCall(QStringLiteral("RequestConfig %1").arg(address));
        break;
    case Request::RequestStatus:
        logCall(QStringLiteral("RequestStatus %1").arg(address));
        break;
    case Request::Configure:
        logCall(QStringLiteral("Configure %1 %2").arg(address).arg(newSatId));
        break;
    }

    if (injectedError_) {
        const InjectedError error = std::move(*injectedError_);
        injectedError_.reset();
        later_.post(answerDelayMs_,
                    [this, error] { emit NetError(error.number, error.description); });
        return;
    }
    if (linkState_ == 0) {
        later_.post(answerDelayMs_,
                    [this] { emit NetError(PortNotOpenError, QStringLiteral("Port not open")); });
        return;
    }
    // One exchange of a kind per satellite is under way at a time: asking again
    // before the answer has landed rides on the exchange already on the air, as a
    // radio that polls would have it (a live test asks on every answer).
    const Exchange exchange{satellite.get(), kind};
    const bool repeatable = kind == Request::RequestConfig || kind == Request::RequestStatus;
    if (repeatable && !inFlight_.insert(exchange).second)
        return;
    later_.post(answerDelayMs_, [=, this] {
        if (repeatable)
            inFlight_.erase(exchange);
        answer(kind, address, satellite, newSatId, interfaceCode, enabled);
    });
}

// The air as it is when the message lands decides who answers.
void SimulatedRadioNet::answer(Request kind, qint16 address,
                               const std::shared_ptr<NetSatellite> &satellite, qint16 newSatId,
                               qint16 interfaceCode, qint32 enabled) {
    switch (kind) {
    case Request::Detect:
        if (const auto detected = air_.detect(address))
            emit SatelliteAnswered(detected->satId, detected->identity);
        break;
    case Request::RequestConfig:
        if (const auto config = air_.config(address)) {
            satellite->takeConfig(config->interfaceCode, config->enabled, config->rfVersionMajor,
                                  config->rfVersionMinor);
            emit ConfigReceived(config->satId);
        }
        break;
    case Request::RequestStatus:
        if (const auto status = air_.status(address)) {
            satellite->takeStatus(status->rxFree, status->txFree);
            emit StatusReceived(status->satId);
        }
        break;
    case Request::Configure:
        air_.configure(address, newSatId, interfaceCode, enabled);
        break;
    }
}
