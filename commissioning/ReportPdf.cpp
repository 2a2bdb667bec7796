#include "commissioning/ReportFormats.h"

#include <QFileInfo>

PdfPage ReportFormats::pdf(const CommissioningReport &report, OwnTexts::Language language) {
    const OwnTexts texts;
    const QString title = ReportFormats::title(report, texts, language);
    return PdfPage{.html = ReportFormats::html(report, language),
                   .title = title,
                   .footer = title + QStringLiteral("  \u2014  ") +
                             QFileInfo(report.file).fileName() + QStringLiteral("  \u2014  ") +
                             report.when.toString(QStringLiteral("yyyy-MM-dd HH:mm")),
                   .pageNumber = texts(language, "ReportPage")};
}
