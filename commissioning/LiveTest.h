#pragma once

#include "commissioning/Report.h"
#include "commissioning/SatelliteProbe.h"
#include "commissioning/Wording.h"

// The window's live test without the window: round after round, each satellite of
// the file asked for its configuration, then for its status.
class LiveTest {
public:
    LiveTest(NetSession &session, SatelliteProbe &probe, const Wording &words)
        : session_(session)
        , probe_(probe)
        , words_(words) {}

    // Fills the report: a row per satellite (missing when it never answered,
    // differing when it missed rounds or its configuration is not the file's), the
    // health from the recorder. Stops at a link failure, which the round it ended counts in.
    // Returns, for each row it added, the number of rounds in which the satellite answered both
    // requests.
    std::vector<int> run(const std::vector<FileSatellite> &satellites, int rounds,
                         CommissioningReport &report, const Progress &progress = {});

private:
    NetSession &session_;
    SatelliteProbe &probe_;
    const Wording &words_;
};
