#pragma once

#include "commissioning/Report.h"

class QIODevice;

// The formats writeReport() dispatches to, and what they share.
namespace ReportFormats {

using State = CommissioningReport::Row::State;
inline constexpr State AllStates[] = {State::Matches, State::Differs, State::Missing,
                                      State::Unexpected, State::Duplicate};

int count(const CommissioningReport &report, State state);
QString title(const CommissioningReport &report, const OwnTexts &texts,
              OwnTexts::Language language);

// One self-contained page, printable on A4; the PDF is drawn from it too.
QString html(const CommissioningReport &report, OwnTexts::Language language);
// Schema "norvale-report/1".
QByteArray json(const CommissioningReport &report);
// A4 pages with a footer; false when the device cannot be painted on.
bool pdf(const CommissioningReport &report, OwnTexts::Language language, QIODevice &out);

} // namespace ReportFormats
