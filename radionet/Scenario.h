#pragma once

#include "radionet/Air.h"

#include <QString>
#include <optional>
#include <vector>

// What is on the simulated air, as a scenario file describes it (an INI file,
// documented in examples/demo-air.ini): read alike by the in-process network and by
// the emulator at the far end of a serial line.
struct Scenario {
    std::vector<OnAirSatellite> satellites; // in the order a broadcast is heard
    bool drift = false;                     // free memory wanders a little
    int answerDelayMs = 30;
    double lossRate = 0; // the share of messages lost, 0 to 1
    quint32 seed = 1;    // of the losses, so that a run can be repeated

    Air air() const;
};

// The scenario of a file, or nothing with a reason a technician can act on in error:
// which section and key, what was expected, what was found.
std::optional<Scenario> readScenario(const QString &path, QString &error);
