#include "radionet/SimulatedRadioNet.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

// How far a demo satellite's free memory wanders from its base figure, one step per
// status answer: a slow swing of two kilobytes either way.
constexpr std::array<qint16, 8> memoryDrift{0, 1, 2, 1, 0, -1, -2, -1};

qint16 drifted(qint16 base, int step) {
    const int value = base + memoryDrift[static_cast<std::size_t>(step) % memoryDrift.size()];
    return static_cast<qint16>(std::clamp(value, 0, 32767));
}

} // namespace

SimulatedRadioNet::SimulatedRadioNet(QObject *parent)
    : RadioNetControl(parent)
    , satellites_(*this)
    , devices_(*this)
    , availablePorts_{QStringLiteral("COM1"), QStringLiteral("COM2"), QStringLiteral("COM3"),
                      QStringLiteral("COM4")} {
    clock_.start();
    pump_.setSingleShot(true);
    pump_.setTimerType(Qt::PreciseTimer);
    connect(&pump_, &QTimer::timeout, this, &SimulatedRadioNet::deliverNext);

    // A small network to find out of the box.
    const auto demo = [this](qint16 id, qint16 interfaceCode, qint16 major, qint16 minor,
                             qint16 rxFree, qint16 txFree) {
        air_.push_back(AirEntry{OnAirSatellite{.satId = id,
                                               .identity = QStringLiteral("QX NORVALE %1").arg(id),
                                               .interfaceCode = interfaceCode,
                                               .rfVersionMajor = major,
                                               .rfVersionMinor = minor,
                                               .rxFree = rxFree,
                                               .txFree = txFree},
                                true, 0});
    };
    demo(1, 1, 2, 5, 28, 30);
    demo(2, 0, 2, 6, 24, 26);
    demo(3, 0, 3, 1, 56, 60);
}

qint16 SimulatedRadioNet::LinkState() const {
    return linkStateOverride_.value_or(linkState_);
}

bool SimulatedRadioNet::OpenPort() {
    log(QStringLiteral("OpenPort"));
    if (linkState_ != 0)
        return true;
    if (!availablePorts_.contains(commPort_)) {
        const QString text = QStringLiteral("Port %1 not available").arg(commPort_);
        post(0, [this, text] { emit NetError(PortNotAvailableError, text); });
        return false;
    }
    linkState_ = 1;
    return true;
}

bool SimulatedRadioNet::ClosePort() {
    log(QStringLiteral("ClosePort"));
    linkState_ = 0;
    return true;
}

bool SimulatedRadioNet::StartPolling() {
    log(QStringLiteral("StartPolling"));
    if (linkState_ == 0) {
        post(0, [this] { emit NetError(PortNotOpenError, QStringLiteral("Port not open")); });
        return false;
    }
    linkState_ = 2;
    return true;
}

bool SimulatedRadioNet::StopPolling() {
    log(QStringLiteral("StopPolling"));
    if (linkState_ == 0)
        return false;
    if (linkState_ == 2)
        linkState_ = 3;
    return true;
}

void SimulatedRadioNet::SetNotification(bool &sendToPc, qint16 &timeNotify, qint16 &timeGoingOn) {
    log(QStringLiteral("SetNotification %1 %2 %3")
            .arg(sendToPc ? QStringLiteral("true") : QStringLiteral("false"))
            .arg(timeNotify)
            .arg(timeGoingOn));
    sendToPc_ = sendToPc;
    timeNotify_ = timeNotify;
    timeGoingOn_ = timeGoingOn;
}

void SimulatedRadioNet::GetNotification(bool &sendToPc, qint16 &timeNotify, qint16 &timeGoingOn) {
    log(QStringLiteral("GetNotification"));
    sendToPc = sendToPc_;
    timeNotify = timeNotify_;
    timeGoingOn = timeGoingOn_;
}

void SimulatedRadioNet::putOnAir(const OnAirSatellite &satellite) {
    const auto it = std::find_if(air_.begin(), air_.end(), [&](const AirEntry &e) {
        return e.satellite.satId == satellite.satId;
    });
    // A satellite given by the scenario reports exactly its own figures.
    if (it != air_.end())
        *it = AirEntry{satellite, false, 0};
    else
        air_.push_back(AirEntry{satellite, false, 0});
}

void SimulatedRadioNet::removeFromAir(qint16 satId) {
    // All of them: a Configure may have given two satellites the same id.
    std::erase_if(air_, [satId](const AirEntry &e) { return e.satellite.satId == satId; });
}

void SimulatedRadioNet::clearAir() {
    air_.clear();
}

std::optional<OnAirSatellite> SimulatedRadioNet::onAir(qint16 satId) const {
    const auto it = std::find_if(air_.begin(), air_.end(),
                                 [satId](const AirEntry &e) { return e.satellite.satId == satId; });
    if (it == air_.end())
        return std::nullopt;
    return it->satellite;
}

void SimulatedRadioNet::setAvailablePorts(const QStringList &ports) {
    availablePorts_ = ports;
}

void SimulatedRadioNet::setAnswerDelayMs(int delayMs) {
    answerDelayMs_ = std::max(0, delayMs);
}

void SimulatedRadioNet::injectNetError(qint16 errNum, const QString &description) {
    injectedError_ = InjectedError{errNum, description};
}

void SimulatedRadioNet::setLinkStateOverride(std::optional<qint16> state) {
    linkStateOverride_ = state;
}

void SimulatedRadioNet::raiseNetError(qint16 errNum, const QString &description) {
    post(0, [this, errNum, description] { emit NetError(errNum, description); });
}

void SimulatedRadioNet::raiseSatelliteAnswered(qint16 satId, const QString &identity) {
    post(0, [this, satId, identity] { emit SatelliteAnswered(satId, identity); });
}

void SimulatedRadioNet::raiseConfigReceived(qint16 satId) {
    post(0, [this, satId] { emit ConfigReceived(satId); });
}

void SimulatedRadioNet::raiseStatusReceived(qint16 satId) {
    post(0, [this, satId] { emit StatusReceived(satId); });
}

void SimulatedRadioNet::request(Request kind,
                                const std::shared_ptr<SimulatedSatellite> &satellite) {
    // The radio message carries the address and settings of the moment it is sent.
    const qint16 address = satellite->SatId();
    const qint16 newSatId = satellite->newSatId_;
    const qint16 interfaceCode = satellite->Interface();
    const qint32 enabled = satellite->Enabled();

    switch (kind) {
    case Request::Detect:
        log(QStringLiteral("Detect %1").arg(address));
        break;
    case Request::RequestConfig:
        log(QStringLiteral("RequestConfig %1").arg(address));
        break;
    case Request::RequestStatus:
        log(QStringLiteral("RequestStatus %1").arg(address));
        break;
    case Request::Configure:
        log(QStringLiteral("Configure %1 %2").arg(address).arg(newSatId));
        break;
    }

    if (injectedError_) {
        const InjectedError error = std::move(*injectedError_);
        injectedError_.reset();
        post(answerDelayMs_, [this, error] { emit NetError(error.number, error.description); });
        return;
    }
    if (linkState_ == 0) {
        post(answerDelayMs_,
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
    post(answerDelayMs_, [=, this] {
        if (repeatable)
            inFlight_.erase(exchange);
        answer(kind, address, satellite, newSatId, interfaceCode, enabled);
    });
}

// The air as it is when the message lands decides who answers.
void SimulatedRadioNet::answer(Request kind, qint16 address,
                               const std::shared_ptr<SimulatedSatellite> &satellite,
                               qint16 newSatId, qint16 interfaceCode, qint32 enabled) {
    if (kind == Request::Detect && address == BroadcastSatId) {
        const auto it = std::find_if(air_.begin(), air_.end(),
                                     [](const AirEntry &e) { return e.satellite.answers; });
        if (it != air_.end())
            emit SatelliteAnswered(it->satellite.satId, it->satellite.identity);
        return;
    }
    AirEntry *target = listening(address);
    if (!target)
        return;
    switch (kind) {
    case Request::Detect:
        emit SatelliteAnswered(target->satellite.satId, target->satellite.identity);
        break;
    case Request::RequestConfig:
        satellite->takeConfig(target->satellite);
        emit ConfigReceived(target->satellite.satId);
        break;
    case Request::RequestStatus: {
        const OnAirSatellite &s = target->satellite;
        if (target->drifts) {
            const int step = target->statusAnswers++;
            // The two figures swing out of step with each other.
            satellite->takeStatus(drifted(s.rxFree, step), drifted(s.txFree, step + 2));
        } else {
            satellite->takeStatus(s.rxFree, s.txFree);
        }
        emit StatusReceived(s.satId);
        break;
    }
    case Request::Configure:
        target->satellite.satId = newSatId;
        target->satellite.interfaceCode = interfaceCode;
        target->satellite.enabled = enabled;
        break;
    }
}

SimulatedRadioNet::AirEntry *SimulatedRadioNet::listening(qint16 satId) {
    const auto it = std::find_if(air_.begin(), air_.end(), [satId](const AirEntry &e) {
        return e.satellite.satId == satId && e.satellite.answers;
    });
    return it == air_.end() ? nullptr : &*it;
}

void SimulatedRadioNet::post(int delayMs, std::function<void()> work) {
    const qint64 due = clock_.elapsed() + delayMs;
    // After every entry due at the same time or earlier: equal delays keep call order.
    const auto at = std::upper_bound(pending_.begin(), pending_.end(), due,
                                     [](qint64 d, const Pending &p) { return d < p.dueMs; });
    pending_.insert(at, Pending{due, std::move(work)});
    rearm();
}

void SimulatedRadioNet::rearm() {
    if (pending_.empty()) {
        pump_.stop();
        return;
    }
    const qint64 wait = std::max<qint64>(0, pending_.front().dueMs - clock_.elapsed());
    pump_.start(static_cast<int>(wait));
}

void SimulatedRadioNet::deliverNext() {
    if (pending_.empty())
        return;
    if (pending_.front().dueMs > clock_.elapsed()) {
        rearm();
        return;
    }
    const std::function<void()> work = std::move(pending_.front().work);
    pending_.pop_front();
    // Armed before the work runs: a handler that waits in a nested event loop still
    // receives what follows.
    rearm();
    work();
}
