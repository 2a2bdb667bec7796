#include "radionet/NetworkLog.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t RecentLatencies = 255; // odd: the median is one of them

int pendingSlot(NetworkLog::What what) {
    switch (what) {
    case NetworkLog::What::Detect:
    case NetworkLog::What::SatelliteAnswered:
        return 0;
    case NetworkLog::What::RequestConfig:
    case NetworkLog::What::ConfigReceived:
        return 1;
    case NetworkLog::What::RequestStatus:
    case NetworkLog::What::StatusReceived:
        return 2;
    default:
        return -1;
    }
}

QString interfaceName(qint32 code) {
    return code == 1 ? QStringLiteral("RS-232") : QStringLiteral("RS-485");
}

QString csvField(QString text) {
    if (!text.contains(u',') && !text.contains(u'"') && !text.contains(u'\n'))
        return text;
    return u'"' + text.replace(u'"', QStringLiteral("\"\"")) + u'"';
}

} // namespace

NetworkLog::NetworkLog(int capacity)
    : capacity_(std::max(1, capacity)) {
    ring_.reserve(std::size_t(capacity_));
    clock_.start();
}

NetworkLog::Tracking &NetworkLog::track(qint16 satId) {
    Tracking &t = satellites_[satId];
    t.health.satId = satId;
    return t;
}

void NetworkLog::push(Entry entry) {
    entry.number = next_++;
    if (ring_.size() < std::size_t(capacity_)) {
        ring_.push_back(std::move(entry));
        return;
    }
    ring_[head_] = std::move(entry);
    // No division: this runs twice on every answer of a live test.
    if (++head_ == ring_.size())
        head_ = 0;
}

void NetworkLog::call(What what, qint16 satId, qint32 a, qint32 b, qint32 c, qint32 d) {
    Entry entry{.timeNs = nowNs(),
                .what = what,
                .satId = satId,
                .a = a,
                .b = b,
                .c = c,
                .d = d,
                .text = {}};
    const int slot = pendingSlot(what);
    if (what == What::Detect && satId == AnySatellite) {
        // Nobody to count it against until a satellite answers.
        if (anyDetectNs_ < 0 || entry.timeNs - anyDetectNs_ > missAfterNs_)
            anyDetectNs_ = entry.timeNs;
    } else if (slot >= 0 && satId != NoSatellite) {
        Tracking &t = track(satId);
        qint64 &pending = t.pendingNs[slot];
        // Asked again while the answer is still awaited: the same exchange, unless
        // it waited so long that it is given up as missed.
        if (pending >= 0 && entry.timeNs - pending > missAfterNs_) {
            ++t.health.missed;
            pending = -1;
        }
        if (pending < 0) {
            pending = entry.timeNs;
            ++t.health.requests;
        }
    }
    push(std::move(entry));
}

void NetworkLog::configure(qint16 oldSatId, qint16 newSatId, qint16 oldInterface,
                           qint16 newInterface, qint32 oldEnabled, qint32 newEnabled) {
    call(What::Configure, oldSatId, newSatId, (qint32(oldInterface) << 16) | quint16(newInterface),
         oldEnabled, newEnabled);
}

void NetworkLog::event(What what, qint16 satId, qint32 a, const QString &text) {
    Entry entry{.timeNs = nowNs(), .what = what, .satId = satId, .a = a, .text = text};
    const int slot = pendingSlot(what);
    if (slot >= 0) {
        Tracking &t = track(satId);
        qint64 &pending = t.pendingNs[slot];
        // A Detect to any satellite is answered under the answering satellite's own id.
        if (slot == 0 && pending < 0 && anyDetectNs_ >= 0) {
            pending = std::exchange(anyDetectNs_, -1);
            ++t.health.requests;
        }
        if (pending >= 0) {
            entry.latencyNs = entry.timeNs - pending;
            pending = -1;
            if (t.recent.size() < RecentLatencies)
                t.recent.push_back(entry.latencyNs);
            else
                t.recent[t.recentAt] = entry.latencyNs;
            t.recentAt = (t.recentAt + 1) % RecentLatencies;
            t.health.worstLatencyNs = std::max(t.health.worstLatencyNs, entry.latencyNs);
        }
        ++t.health.answers;
        t.health.lastSeenNs = entry.timeNs;
    }
    push(std::move(entry));
}

std::vector<NetworkLog::Entry> NetworkLog::entries(quint64 after) const {
    std::vector<Entry> out;
    const std::size_t n = ring_.size();
    for (std::size_t i = 0; i < n; ++i) {
        const Entry &e = ring_[(head_ + i) % n];
        if (e.number > after)
            out.push_back(e);
    }
    return out;
}

std::vector<NetworkLog::Health> NetworkLog::health() const {
    std::vector<Health> out;
    const qint64 now = nowNs();
    for (const Tracking &t : satellites_) {
        Health h = t.health;
        for (const qint64 pending : t.pendingNs)
            if (pending >= 0 && now - pending > missAfterNs_)
                ++h.missed;
        if (!t.recent.empty()) {
            std::vector<qint64> sorted = t.recent;
            const auto middle = sorted.begin() + std::ptrdiff_t(sorted.size() / 2);
            std::nth_element(sorted.begin(), middle, sorted.end());
            h.medianLatencyNs = *middle;
        }
        out.push_back(h);
    }
    std::sort(out.begin(), out.end(),
              [](const Health &x, const Health &y) { return x.satId < y.satId; });
    return out;
}

void NetworkLog::clear() {
    ring_.clear();
    head_ = 0;
    satellites_.clear();
    anyDetectNs_ = -1;
}

QString NetworkLog::whatName(What what) {
    static constexpr const char *names[] = {
        "OpenPort", "ClosePort",         "StartPolling",   "StopPolling",
        "Detect",   "RequestConfig",     "RequestStatus",  "Configure",
        "NetError", "SatelliteAnswered", "ConfigReceived", "StatusReceived"};
    return QLatin1String(names[std::size_t(what)]);
}

QString NetworkLog::describe(const Entry &e) {
    switch (e.what) {
    case What::OpenPort:
    case What::ClosePort:
    case What::StartPolling:
    case What::StopPolling:
        return e.a ? QStringLiteral("done") : QStringLiteral("refused");
    case What::Configure:
        return QStringLiteral("Sat ID %1 -> %2, %3 -> %4, enabled %5 -> %6")
            .arg(e.satId)
            .arg(e.a)
            .arg(interfaceName(e.b >> 16), interfaceName(qint16(e.b & 0xFFFF)))
            .arg(e.c)
            .arg(e.d);
    case What::NetError:
        // In one pass: a description may hold "%1" of its own.
        return QStringLiteral("%1 (n.%2)").arg(e.text, QString::number(e.a));
    case What::SatelliteAnswered:
        return e.text;
    default:
        return QString();
    }
}

QString NetworkLog::csv() const {
    QString out = QStringLiteral("time_ms,direction,sat_id,what,details,latency_ms\n");
    for (const Entry &e : entries()) {
        out += QString::number(double(e.timeNs) / 1e6, 'f', 3) + u',';
        out += isEvent(e.what) ? QStringLiteral("<-,") : QStringLiteral("->,");
        out += (e.satId == NoSatellite ? QString() : QString::number(e.satId)) + u',';
        out += whatName(e.what) + u',' + csvField(describe(e)) + u',';
        out += (e.latencyNs < 0 ? QString() : QString::number(double(e.latencyNs) / 1e6, 'f', 3));
        out += u'\n';
    }
    return out;
}
