#pragma once

#include "commissioning/PdfModule.h"
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
// The same page, with what the PDF's footers say.
PdfPage pdf(const CommissioningReport &report, OwnTexts::Language language);

} // namespace ReportFormats
