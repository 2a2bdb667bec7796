#pragma once

#include <QRandomGenerator>
#include <QString>
#include <QtGlobal>
#include <optional>
#include <vector>

struct OnAirSatellite { // a satellite on the air, as the radio sees it
    qint16 satId;
    QString identity = QStringLiteral("QX NORVALE");
    qint16 interfaceCode = 1;
    qint32 enabled = 1;
    qint16 rfVersionMajor = 2, rfVersionMinor = 5;
    qint16 rxFree = 28, txFree = 30;
    bool answers = true; // false: it stays silent
    // Its interface is set on the satellite itself (a jumper): a configuration
    // changes the rest and leaves the interface as it is.
    bool interfaceFixed = false;
};

// The satellites on the air and how they answer: one model of the radio, played by
// the in-process network and by the emulator at the far end of a serial line.
//
// A silent satellite neither answers nor takes a configuration: to the radio it is
// as good as absent. A lost message is one that no satellite hears.
class Air {
public:
    static constexpr qint16 AnySatellite = 2047; // a Detect to it is answered by the first

    struct Detected {
        qint16 satId;
        QString identity;
    };
    struct Status {
        qint16 satId;
        qint16 rxFree, txFree;
    };

    Air() = default;
    // The demo network: Sat IDs 1, 2 and 3, whose free memory wanders a little.
    static Air demo();

    void put(const OnAirSatellite &satellite, bool drifts = false); // or replaces its id
    void remove(qint16 satId);                                      // every satellite with that id
    void clear() { entries_.clear(); }
    std::optional<OnAirSatellite> find(qint16 satId) const;
    std::vector<OnAirSatellite> satellites() const;

    // The share of messages lost on the way, 0 to 1, drawn from a seeded sequence so
    // that a run can be repeated.
    void setLossRate(double rate, quint32 seed = 1);
    double lossRate() const { return lossRate_; }

    // The answers, as the air is at the moment the message lands; nothing when no
    // satellite answers or the message is lost.
    std::optional<Detected> detect(qint16 address);
    std::optional<OnAirSatellite> config(qint16 address);
    std::optional<Status> status(qint16 address);
    // The addressed satellite takes the new id, interface and enabled flag.
    bool configure(qint16 address, qint16 newSatId, qint16 interfaceCode, qint32 enabled);

private:
    struct Entry {
        OnAirSatellite satellite;
        bool drifts;
        int statusAnswers = 0;
    };
    Entry *listening(qint16 satId);
    bool lost();

    std::vector<Entry> entries_; // in the order put: the order a broadcast is heard
    double lossRate_ = 0;
    QRandomGenerator random_;
};
