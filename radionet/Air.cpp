#include "radionet/Air.h"

#include <algorithm>
#include <array>

namespace {

// How far a demo satellite's free memory wanders from its base figure, one step per
// status answer: a slow swing of two kilobytes either way.
constexpr std::array<qint16, 8> memoryDrift{0, 1, 2, 1, 0, -1, -2, -1};

qint16 drifted(qint16 base, int step) {
    const int value = base + memoryDrift[static_cast<std::size_t>(step) % memoryDrift.size()];
    return static_cast<qint16>(std::clamp(value, 0, 32767));
}

} // namespace

Air Air::demo() {
    Air air;
    const auto put = [&air](qint16 id, qint16 interfaceCode, qint16 major, qint16 minor,
                            qint16 rxFree, qint16 txFree) {
        air.put(OnAirSatellite{.satId = id,
                               .identity = QStringLiteral("QX NORVALE %1").arg(id),
                               .interfaceCode = interfaceCode,
                               .rfVersionMajor = major,
                               .rfVersionMinor = minor,
                               .rxFree = rxFree,
                               .txFree = txFree},
                true);
    };
    put(1, 1, 2, 5, 28, 30);
    put(2, 0, 2, 6, 24, 26);
    put(3, 0, 3, 1, 56, 60);
    return air;
}

void Air::put(const OnAirSatellite &satellite, bool drifts) {
    const auto it = std::find_if(entries_.begin(), entries_.end(), [&](const Entry &e) {
        return e.satellite.satId == satellite.satId;
    });
    if (it != entries_.end())
        *it = Entry{satellite, drifts};
    else
        entries_.push_back(Entry{satellite, drifts});
}

void Air::remove(qint16 satId) {
    // All of them: a Configure may have given two satellites the same id.
    std::erase_if(entries_, [satId](const Entry &e) { return e.satellite.satId == satId; });
}

std::optional<OnAirSatellite> Air::find(qint16 satId) const {
    const auto it = std::find_if(entries_.begin(), entries_.end(),
                                 [satId](const Entry &e) { return e.satellite.satId == satId; });
    if (it == entries_.end())
        return std::nullopt;
    return it->satellite;
}

std::vector<OnAirSatellite> Air::satellites() const {
    std::vector<OnAirSatellite> all;
    for (const Entry &e : entries_)
        all.push_back(e.satellite);
    return all;
}

void Air::setLossRate(double rate, quint32 seed) {
    lossRate_ = std::clamp(rate, 0.0, 1.0);
    random_.seed(seed);
}

bool Air::lost() {
    return lossRate_ > 0 && random_.generateDouble() < lossRate_;
}

Air::Entry *Air::listening(qint16 satId) {
    const auto it = std::find_if(entries_.begin(), entries_.end(), [satId](const Entry &e) {
        return e.satellite.satId == satId && e.satellite.answers;
    });
    return it == entries_.end() ? nullptr : &*it;
}

std::optional<Air::Detected> Air::detect(qint16 address) {
    if (lost())
        return std::nullopt;
    const Entry *answering = nullptr;
    if (address == AnySatellite) {
        const auto it = std::find_if(entries_.begin(), entries_.end(),
                                     [](const Entry &e) { return e.satellite.answers; });
        answering = it == entries_.end() ? nullptr : &*it;
    } else {
        answering = listening(address);
    }
    if (!answering)
        return std::nullopt;
    return Detected{answering->satellite.satId, answering->satellite.identity};
}

std::optional<OnAirSatellite> Air::config(qint16 address) {
    const Entry *target = lost() ? nullptr : listening(address);
    if (!target)
        return std::nullopt;
    return target->satellite;
}

std::optional<Air::Status> Air::status(qint16 address) {
    Entry *target = lost() ? nullptr : listening(address);
    if (!target)
        return std::nullopt;
    const OnAirSatellite &s = target->satellite;
    if (!target->drifts)
        return Status{s.satId, s.rxFree, s.txFree};
    // The two figures swing out of step with each other.
    const int step = target->statusAnswers++;
    return Status{s.satId, drifted(s.rxFree, step), drifted(s.txFree, step + 2)};
}

bool Air::configure(qint16 address, qint16 newSatId, qint16 interfaceCode, qint32 enabled) {
    Entry *target = lost() ? nullptr : listening(address);
    if (!target)
        return false;
    target->satellite.satId = newSatId;
    if (!target->satellite.interfaceFixed)
        target->satellite.interfaceCode = interfaceCode;
    target->satellite.enabled = enabled;
    return true;
}
