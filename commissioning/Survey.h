#pragma once

#include "commissioning/Report.h"
#include "commissioning/SatelliteProbe.h"
#include "commissioning/Wording.h"

// A network checked against its configuration file: every satellite of the file
// detected and read back, then a broadcast Detect for one that the file does not
// list. A Sat ID given twice in the file is reported, not asked twice.
class Survey {
public:
    Survey(NetSession &session, SatelliteProbe &probe, const Wording &words)
        : session_(session)
        , probe_(probe)
        , words_(words) {}

    // Fills the report's rows, notes and health; stops at a link failure, which the
    // session tells.
    void run(const std::vector<FileSatellite> &satellites, CommissioningReport &report,
             const Progress &progress = {});

private:
    // Reads one satellite that answered into its row, comparing with the file's.
    void readBack(CommissioningReport::Row &row, const FileSatellite *expected);

    NetSession &session_;
    SatelliteProbe &probe_;
    const Wording &words_;
};
