#include "Report.h"

#include <QLocale>
#include <QTextStream>
#include <algorithm>
#include <array>
#include <cstdio>

namespace {

QString verdictText(Report::Verdict verdict) {
    switch (verdict) {
    case Report::Verdict::Kept:
        return QStringLiteral("kept");
    case Report::Verdict::Missed:
        return QStringLiteral("MISSED");
    case Report::Verdict::Failed:
        return QStringLiteral("FAILED");
    case Report::Verdict::NoBudget:
        break;
    }
    return QStringLiteral("-");
}

} // namespace

void Report::fail(const QString &number, const QString &measure, const QString &why) {
    add({number, measure, QStringLiteral("n/a"), why, QString(), Verdict::Failed});
}

void Report::print() const {
    const std::array<QString, 6> header{QStringLiteral("#"),      QStringLiteral("Measure"),
                                        QStringLiteral("Median"), QStringLiteral("Compared with"),
                                        QStringLiteral("Budget"), QStringLiteral("Result")};
    std::vector<std::array<QString, 6>> lines;
    lines.push_back(header);
    for (const Row &row : rows_)
        lines.push_back({row.number, row.measure, row.value, row.comparedWith, row.budget,
                         verdictText(row.verdict)});

    std::array<qsizetype, 6> width{};
    for (const auto &line : lines)
        for (std::size_t c = 0; c < line.size(); ++c)
            width[c] = std::max(width[c], line[c].size());

    QString out;
    QTextStream stream(&out);
    auto separator = [&] {
        stream << '|';
        for (qsizetype w : width)
            stream << QString(w + 2, u'-') << '|';
        stream << '\n';
    };
    for (std::size_t i = 0; i < lines.size(); ++i) {
        stream << '|';
        for (std::size_t c = 0; c < lines[i].size(); ++c)
            stream << ' ' << lines[i][c].leftJustified(width[c]) << " |";
        stream << '\n';
        if (i == 0)
            separator();
    }
    for (const QString &note : notes_)
        stream << '\n' << note;
    stream << '\n';
    stream.flush();
    std::fputs(out.toUtf8().constData(), stdout);
    std::fflush(stdout);
}

bool Report::allKept() const {
    return std::none_of(rows_.begin(), rows_.end(), [](const Row &row) {
        return row.verdict == Verdict::Missed || row.verdict == Verdict::Failed;
    });
}

QString formatMs(double ms) {
    return QString::number(ms, 'f', ms < 10 ? 2 : 1) + QStringLiteral(" ms");
}

QString formatUs(double us) {
    if (us >= 1000)
        return formatMs(us / 1000);
    return QString::number(us, 'f', us < 10 ? 2 : 1) + QStringLiteral(" µs");
}

QString formatPercent(double fraction) {
    return QString::number(fraction * 100, 'f', fraction < 0.1 ? 2 : 1) + QStringLiteral(" %");
}

QString formatRatio(double ratio) {
    return QString::number(ratio, 'f', 2) + QStringLiteral(" x");
}

QString formatCount(double count) {
    return QLocale(QLocale::English).toString(count, 'f', 0);
}
