#include "commissioning/Report.h"

#include "commissioning/ReportFormats.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>

bool CommissioningReport::clean() const {
    return std::all_of(rows.begin(), rows.end(),
                       [](const Row &row) { return row.state == Row::State::Matches; });
}

QString stateName(CommissioningReport::Row::State state) {
    switch (state) {
    case CommissioningReport::Row::State::Matches:
        return QStringLiteral("matches");
    case CommissioningReport::Row::State::Differs:
        return QStringLiteral("differs");
    case CommissioningReport::Row::State::Missing:
        return QStringLiteral("missing");
    case CommissioningReport::Row::State::Unexpected:
        return QStringLiteral("unexpected");
    case CommissioningReport::Row::State::Duplicate:
        break;
    }
    return QStringLiteral("duplicate");
}

int ReportFormats::count(const CommissioningReport &report, State state) {
    return int(std::count_if(report.rows.begin(), report.rows.end(),
                             [state](const auto &row) { return row.state == state; }));
}

QString ReportFormats::title(const CommissioningReport &report, const OwnTexts &texts,
                             OwnTexts::Language language) {
    return texts(language, report.kind == CommissioningReport::Kind::Survey ? "ReportTitleSurvey"
                                                                            : "ReportTitleTest");
}

bool writeReport(const CommissioningReport &report, const QString &fileName,
                 OwnTexts::Language language, QString &error, const PdfModule *pdf) {
    const OwnTexts texts;
    const QString shownName = QDir::toNativeSeparators(fileName);
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix != "html" && suffix != "pdf" && suffix != "json") {
        error = texts(language, "ReportUnknownKind", shownName);
        return false;
    }
    if (suffix == "pdf" && !(pdf && pdf->loaded())) {
        error = texts(language, "ReportNoGraphics");
        return false;
    }
    // Written beside the old report and renamed over it only once complete.
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        error =
            texts(language, "ReportCannotWrite",
                  QDir::toNativeSeparators(QFileInfo(fileName).absolutePath()), file.errorString());
        return false;
    }
    bool written = true;
    if (suffix == "pdf")
        written = pdf->paint(ReportFormats::pdf(report, language), file);
    else if (suffix == "json")
        file.write(ReportFormats::json(report));
    else
        file.write(ReportFormats::html(report, language).toUtf8());
    if (!written)
        file.cancelWriting();
    if (!file.commit()) {
        error = texts(language, "ReportNotWritten", shownName, file.errorString());
        return false;
    }
    return true;
}
