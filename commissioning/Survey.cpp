#include "commissioning/Survey.h"

#include "commissioning/ReportRows.h"
#include "radionet/Air.h"

#include <algorithm>

using Row = CommissioningReport::Row;

void Survey::run(const std::vector<FileSatellite> &satellites, CommissioningReport &report,
                 const Progress &progress) {
    report.kind = CommissioningReport::Kind::Survey;
    const int steps = int(satellites.size()) + 1;
    std::vector<const FileSatellite *> missing;
    for (const FileSatellite &s : satellites) {
        if (session_.linkFailure())
            break;
        Row row;
        expectFromFile(row, s);
        const auto first = std::find_if(satellites.begin(), satellites.end(),
                                        [&](const FileSatellite &o) { return o.satId == s.satId; });
        if (first->position != s.position) {
            row.state = Row::State::Duplicate;
            // The reader gives a repeated Sat ID's values to its first satellite only.
            row.expectedInterface.clear();
            row.expectedEnabled.clear();
            row.differences << words_("CliSurveyDuplicate", s.satId, first->position);
            report.notes << words_("CliSurveyDuplicateNote", s.satId, first->position, s.position);
        } else {
            if (progress)
                progress(s.position, steps, s.satId);
            if (const auto answer = probe_.detect(s.satId)) {
                row.identity = answer->identity;
                readBack(row, &s);
            } else {
                row.state = Row::State::Missing;
                row.differences << words_("CliSurveyNoAnswer");
                missing.push_back(&s);
            }
        }
        report.rows.push_back(row);
    }

    if (!session_.linkFailure()) {
        if (progress)
            progress(steps, steps, Air::AnySatellite);
        const auto answer = probe_.detect(Air::AnySatellite);
        const bool listed =
            answer && std::any_of(satellites.begin(), satellites.end(),
                                  [&](const FileSatellite &s) { return s.satId == answer->satId; });
        if (answer && !listed) {
            Row row;
            row.satId = answer->satId;
            row.identity = answer->identity;
            row.differences << words_("CliSurveyUnexpected");
            readBack(row, nullptr);
            row.state = Row::State::Unexpected;
            report.rows.push_back(row);
            // The likeliest story: a satellite of the file given a new Sat ID.
            if (missing.size() == 1)
                report.notes << words_("CliSurveyRenamed", answer->satId, missing.front()->satId);
        }
    }
    // The run is over: an answer still awaited will not come.
    session_.net().log().setMissAfterNs(0);
    report.health = session_.net().log().health();
}

void Survey::readBack(Row &row, const FileSatellite *expected) {
    const auto config = probe_.readConfig(row.satId);
    const auto status = config ? probe_.readStatus(row.satId) : std::nullopt;
    if (config)
        foundOnAir(row, *config);
    if (status)
        foundOnAir(row, *status);
    if (!expected)
        return;
    if (!config)
        row.differences << words_("CliSurveyNoConfig");
    else if (!status)
        row.differences << words_("CliSurveyNoStatus");
    compareWithFile(row, words_);
    row.state = row.differences.isEmpty() ? Row::State::Matches : Row::State::Differs;
}
