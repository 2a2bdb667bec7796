#include "commissioning/LiveTest.h"

#include "commissioning/ReportRows.h"

#include <algorithm>

using Row = CommissioningReport::Row;

std::vector<int> LiveTest::run(const std::vector<FileSatellite> &satellites, int rounds,
                               CommissioningReport &report, const Progress &progress) {
    report.kind = CommissioningReport::Kind::Test;
    report.rounds = 0;
    // A Sat ID given twice is one satellite on the air: asked once a round.
    std::vector<FileSatellite> asked;
    for (const FileSatellite &s : satellites) {
        if (std::none_of(asked.begin(), asked.end(),
                         [&](const FileSatellite &o) { return o.satId == s.satId; }))
            asked.push_back(s);
    }
    std::vector<Row> rows(asked.size());
    std::vector<int> answered(asked.size(), 0);
    const int steps = rounds * int(asked.size());
    for (int round = 0; round < rounds && !session_.linkFailure(); ++round) {
        ++report.rounds; // begun: a round the link ends midway counts
        for (std::size_t i = 0; i < asked.size() && !session_.linkFailure(); ++i) {
            const FileSatellite &s = asked[i];
            if (progress)
                progress(round * int(asked.size()) + int(i) + 1, steps, s.satId);
            Row &row = rows[i];
            const auto config = probe_.readConfig(s.satId);
            const auto status = config ? probe_.readStatus(s.satId) : std::nullopt;
            if (!status)
                continue;
            ++answered[i];
            foundOnAir(row, *config);
            foundOnAir(row, *status);
        }
    }

    for (std::size_t i = 0; i < asked.size(); ++i) {
        Row &row = rows[i];
        expectFromFile(row, asked[i]);
        if (answered[i] < report.rounds)
            row.differences << words_("CliTestAnswered", answered[i], report.rounds);
        compareWithFile(row, words_);
        row.state = answered[i] == 0 && report.rounds > 0 ? Row::State::Missing
                    : row.differences.isEmpty()           ? Row::State::Matches
                                                          : Row::State::Differs;
        report.rows.push_back(row);
    }
    // The run is over: an answer still awaited will not come.
    session_.net().log().setMissAfterNs(0);
    report.health = session_.net().log().health();
    return answered;
}
