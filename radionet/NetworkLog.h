#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QString>
#include <QtGlobal>
#include <vector>

// The record of what went to and came from a network: every call on the control
// that reaches the network and every event, time-stamped on the monotonic clock,
// in a bounded ring; and, from it, each satellite's health. Cheap enough to run
// during a live test: an entry is a few numbers, its text is made only when read.
class NetworkLog {
public:
    enum class What : quint8 {
        // Calls, from the program to the network.
        OpenPort,
        ClosePort,
        StartPolling,
        StopPolling,
        Detect,
        RequestConfig,
        RequestStatus,
        Configure,
        // Events, from the network.
        NetError,
        SatelliteAnswered,
        ConfigReceived,
        StatusReceived,
    };

    struct Entry {
        quint64 number = 0; // 1 for the first entry ever recorded, never reused
        qint64 timeNs = 0;  // since the log started
        What what = What::OpenPort;
        qint16 satId = NoSatellite;
        qint64 latencyNs = -1; // answers: since the request they answer
        // Configure: old -> new Sat ID, interface and enabled flag; NetError: its
        // number; calls on the port: the result (1 or 0).
        qint32 a = 0, b = 0, c = 0, d = 0;
        QString text; // NetError: the description; SatelliteAnswered: the identity
    };

    struct Health {
        qint16 satId = 0;
        quint64 requests = 0, answers = 0, missed = 0;
        qint64 medianLatencyNs = -1, worstLatencyNs = -1;
        qint64 lastSeenNs = -1; // time of its last answer, -1 never
    };

    static constexpr qint16 NoSatellite = -32768;
    // A Detect sent to this Sat ID is answered by any satellite, under its own id.
    static constexpr qint16 AnySatellite = 2047;
    static constexpr int DefaultCapacity = 20000;
    // A request not answered within this time is counted as missed (by default).
    static constexpr qint64 MissAfterNs = 2'000'000'000;

    explicit NetworkLog(int capacity = DefaultCapacity);

    // Recording.
    void call(What what, qint16 satId = NoSatellite, qint32 a = 0, qint32 b = 0, qint32 c = 0,
              qint32 d = 0);
    void event(What what, qint16 satId, qint32 a = 0, const QString &text = QString());
    // Configure, with what the satellite said last (old) and what is sent (new).
    void configure(qint16 oldSatId, qint16 newSatId, qint16 oldInterface, qint16 newInterface,
                   qint32 oldEnabled, qint32 newEnabled);

    // Reading. Entries still held, oldest first, whose number is above `after`
    // (0: all), so that a reader that follows the log takes only what is new.
    std::vector<Entry> entries(quint64 after = 0) const;
    quint64 lastNumber() const { return next_ - 1; }
    int capacity() const { return capacity_; }
    void setMissAfterNs(qint64 ns) { missAfterNs_ = ns; }
    qint64 nowNs() const { return clock_.nsecsElapsed(); }
    // Per satellite, by Sat ID.
    std::vector<Health> health() const;
    void clear();

    // One entry as text: its direction ("->" call, "<-" event), what, and details.
    static QString whatName(What what);
    static bool isEvent(What what) { return what >= What::NetError; }
    static QString describe(const Entry &entry);
    // The whole log as CSV: time (ms), direction, Sat ID, what, details, latency (ms).
    QString csv() const;

private:
    struct Tracking;
    Tracking &track(qint16 satId);
    void push(Entry entry);

    int capacity_;
    qint64 missAfterNs_ = MissAfterNs;
    std::vector<Entry> ring_;
    std::size_t head_ = 0; // where the next entry goes once the ring is full
    quint64 next_ = 1;
    QElapsedTimer clock_;
    struct Tracking {
        Health health;
        qint64 pendingNs[3] = {-1, -1, -1}; // Detect, RequestConfig, RequestStatus
        std::vector<qint64> recent;         // the last latencies, for the median
        std::size_t recentAt = 0;
    };
    QHash<qint16, Tracking> satellites_;
    qint64 anyDetectNs_ = -1; // a Detect to any satellite, still unanswered
};
