#pragma once

#include "commissioning/SatelliteProbe.h"

// A satellite given a new Sat ID, interface or enabled flag, then read back under
// its new Sat ID to see that it took them.
class Reconfiguration {
public:
    enum class Outcome {
        Confirmed,
        NoAnswer,   // the satellite did not answer before: nothing sent
        NewIdTaken, // another satellite answers to the new Sat ID: nothing sent
        Silent,     // nothing answers to the new Sat ID afterwards
        Differs,    // the new Sat ID answers with other settings
        LinkFailed,
    };
    struct Result {
        Outcome outcome = Outcome::NoAnswer;
        SatelliteProbe::Config sent{}, readBack{};
        QString error; // the network's word on a request that failed, if it said one
    };

    Reconfiguration(NetSession &session, SatelliteProbe &probe)
        : session_(session)
        , probe_(probe) {}

    // Settings not given keep the satellite's own.
    Result run(qint16 satId, qint16 newSatId, std::optional<qint16> interfaceCode,
               std::optional<qint32> enabled);

private:
    NetSession &session_;
    SatelliteProbe &probe_;
};
