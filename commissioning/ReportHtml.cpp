#include "commissioning/ReportFormats.h"

#include <QLocale>

namespace {

using Row = CommissioningReport::Row;
using ReportFormats::State;

// Kept to what both a browser and Qt's rich text understand, since the PDF is drawn
// from the same page. Colours only tint: the state is always written out, in bold
// when it needs attention, so the page reads in black and white.
constexpr char16_t Style[] = uR"(
@page { size: A4; margin: 15mm; }
body { font-family: sans-serif; font-size: 9pt; color: #000; }
h1 { font-size: 16pt; margin-top: 0; margin-bottom: 2pt; }
h2 { font-size: 12pt; margin-top: 18px; margin-bottom: 4px; }
p { margin-top: 2pt; margin-bottom: 2pt; }
.brand { font-size: 8pt; color: #555; margin-bottom: 0; }
.verdict { border-collapse: collapse; margin-top: 8pt; margin-bottom: 4pt; }
.verdict td { border: 1px solid #777; background-color: #f2f2f2; padding: 6px; }
.verdict p { font-size: 10.5pt; font-weight: bold; }
.facts td { padding: 1px 12px 1px 0; }
.facts th { text-align: left; padding: 1px 12px 1px 0; }
.grid { border-collapse: collapse; width: 100%; }
.grid th { background-color: #e4e4e4; border: 1px solid #777; padding: 3px; font-size: 7.5pt; }
.grid td { border: 1px solid #777; padding: 3px; vertical-align: top; font-size: 8.5pt; }
.grid td.diff { padding-left: 6px; }
.grid tr { page-break-inside: avoid; }
.num { text-align: right; }
.odd { color: #000; font-weight: bold; }
.note { font-size: 8pt; color: #444; }
.matches { background-color: #e2f2e2; }
.differs { background-color: #fdefc8; font-weight: bold; }
.missing { background-color: #f9d6d5; font-weight: bold; }
.unexpected { background-color: #dce6f7; font-weight: bold; }
.duplicate { background-color: #eadcf5; font-weight: bold; }
)";

QString escaped(const QString &text) {
    return text.isEmpty() ? QStringLiteral("&ndash;") : text.toHtmlEscaped();
}

QString cell(const QString &content, const QString &cssClass = QString(),
             const QString &attributes = QString()) {
    const QString classes = cssClass.isEmpty() ? QString() : " class=\"" + cssClass + "\"";
    return "<td" + classes + attributes + ">" + content + "</td>";
}

// A found value that contradicts the file stands out even without the differences.
QString foundCell(const QString &expected, const QString &found, const QString &shown) {
    const bool odd = !expected.isEmpty() && !found.isEmpty() && expected != found;
    return cell(escaped(shown), odd ? QStringLiteral("odd") : QString());
}

class Page {
public:
    Page(const CommissioningReport &report, OwnTexts::Language language)
        : report_(report)
        , language_(language)
        , locale_(language == OwnTexts::French ? QLocale::French : QLocale::English) {}

    QString html() const {
        QString out = "<!DOCTYPE html>\n<html lang=\"" +
                      QString::fromLatin1(language_ == OwnTexts::French ? "fr" : "en") +
                      "\"><head><meta charset=\"utf-8\"><title>" + title() + "</title>\n<style>" +
                      QString::fromUtf16(Style) +
                      "</style></head>\n<body>\n<p class=\"brand\">Norvale Setup</p>\n<h1>" +
                      title() + "</h1>\n";
        out += facts() + satellites() + notes() + health();
        return out + "</body></html>\n";
    }

private:
    QString t(const char *key) const { return texts_(language_, key).toHtmlEscaped(); }
    QString title() const {
        return ReportFormats::title(report_, texts_, language_).toHtmlEscaped();
    }

    QString stateWord(State state) const {
        // In the order the states are declared.
        constexpr const char *keys[] = {"ReportStateMatches", "ReportStateDiffers",
                                        "ReportStateMissing", "ReportStateUnexpected",
                                        "ReportStateDuplicate"};
        return t(keys[int(state)]);
    }
    QString enabledWord(const QString &flag) const {
        return flag == "1"   ? texts_(language_, "ReportYes")
               : flag == "0" ? texts_(language_, "ReportNo")
                             : flag;
    }

    QString facts() const {
        QString rows;
        const auto fact = [&rows](const QString &label, const QString &value) {
            rows += "<tr><th>" + label + "</th><td>" + value + "</td></tr>\n";
        };
        fact(t("ReportWhen"),
             escaped(report_.when.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))));
        fact(t("ReportNetwork"), escaped(report_.network));
        fact(t("ReportPort"), escaped(report_.port));
        fact(t("ReportSpeed"),
             report_.baudRate.isEmpty()
                 ? escaped(QString())
                 : texts_(language_, "ReportBaud", report_.baudRate).toHtmlEscaped());
        fact(t("ReportFile"), escaped(report_.file));
        if (report_.kind == CommissioningReport::Kind::Test)
            fact(t("ReportRounds"), locale_.toString(report_.rounds));
        QString summary = texts_(language_, "ReportSummary", QString::number(report_.rows.size()));
        for (State state : ReportFormats::AllStates)
            summary = summary.arg(ReportFormats::count(report_, state));
        // The verdict in a box of its own: what the customer reads first.
        return "<table class=\"facts\">\n" + rows +
               "</table>\n<table class=\"verdict\" width=\"100%\" cellspacing=\"0\"><tr><td><p>" +
               t(report_.clean() ? "ReportClean" : "ReportNotClean") + "</p>" +
               summary.toHtmlEscaped() + "</td></tr></table>\n";
    }

    // Ten columns fit A4 upright; a satellite's differences take a line of their
    // own beneath it, across the columns of values, where a sentence has room.
    QString satellites() const {
        QString out = "<h2>" + t("ReportSatellites") +
                      "</h2>\n<table class=\"grid\" width=\"100%\" cellspacing=\"0\">\n<thead><tr>";
        const auto head = [this, &out](const char *key, int width, const char *span) {
            out += "<th width=\"" + QString::number(width) + "%\" " + span + ">" + t(key) + "</th>";
        };
        head("ReportColPosition", 5, "rowspan=\"2\"");
        head("ReportColSatId", 5, "rowspan=\"2\"");
        head("ReportColState", 13, "rowspan=\"2\"");
        head("ReportColInterface", 20, "colspan=\"2\"");
        head("ReportColEnabled", 18, "colspan=\"2\"");
        head("ReportColIdentity", 16, "rowspan=\"2\"");
        head("ReportColFirmware", 10, "rowspan=\"2\"");
        head("ReportColMemory", 13, "rowspan=\"2\"");
        out += "</tr>\n<tr>";
        for (int i = 0; i < 2; ++i)
            out += "<th>" + t("ReportColExpected") + "</th><th>" + t("ReportColFound") + "</th>";
        out += "</tr></thead>\n<tbody>\n";
        for (const Row &row : report_.rows)
            out += satellite(row);
        return out + "</tbody></table>\n";
    }

    QString satellite(const Row &row) const {
        const QString memory = row.rxFree.isEmpty() && row.txFree.isEmpty()
                                   ? QString()
                                   : (row.rxFree.isEmpty() ? QStringLiteral("?") : row.rxFree) +
                                         " / " +
                                         (row.txFree.isEmpty() ? QStringLiteral("?") : row.txFree);
        const QString span =
            row.differences.isEmpty() ? QString() : QStringLiteral(" rowspan=\"2\"");
        QString out =
            "<tr>" +
            cell(row.position > 0 ? QString::number(row.position) : escaped(QString()), "num",
                 span) +
            cell(QString::number(row.satId), "num", span) +
            cell(stateWord(row.state), stateName(row.state), span) +
            cell(escaped(row.expectedInterface)) +
            foundCell(row.expectedInterface, row.foundInterface, row.foundInterface) +
            cell(escaped(enabledWord(row.expectedEnabled))) +
            foundCell(row.expectedEnabled, row.foundEnabled, enabledWord(row.foundEnabled)) +
            cell(escaped(row.identity)) + cell(escaped(row.firmware)) + cell(escaped(memory)) +
            "</tr>\n";
        if (row.differences.isEmpty())
            return out;
        QStringList lines;
        for (const QString &line : row.differences)
            lines += line.toHtmlEscaped();
        return out + "<tr>" +
               cell("<b>" + t("ReportColDifferences") + ":</b> " + lines.join("<br>"), "diff",
                    " colspan=\"7\"") +
               "</tr>\n";
    }

    QString notes() const {
        if (report_.notes.isEmpty())
            return QString();
        QString out = "<h2>" + t("ReportNotes") + "</h2>\n<ul>\n";
        for (const QString &note : report_.notes)
            out += "<li>" + note.toHtmlEscaped() + "</li>\n";
        return out + "</ul>\n";
    }

    QString milliseconds(qint64 ns) const {
        return ns < 0 ? escaped(QString()) : locale_.toString(double(ns) / 1e6, 'f', 1);
    }

    QString health() const {
        QString out = "<h2>" + t("ReportHealth") + "</h2>\n";
        if (report_.health.empty())
            return out + "<p>" + t("ReportHealthNone") + "</p>\n";
        out += "<table class=\"grid\" width=\"100%\" cellspacing=\"0\">\n<thead><tr>";
        for (const char *key :
             {"ReportColSatId", "ReportColRequests", "ReportColAnswers", "ReportColMissed",
              "ReportColMedian", "ReportColWorst", "ReportColLastSeen"})
            out += "<th>" + t(key) + "</th>";
        out += "</tr></thead>\n<tbody>\n";
        const QString num = QStringLiteral("num");
        for (const NetworkLog::Health &h : report_.health) {
            const QString lastSeen =
                h.lastSeenNs < 0 ? t("ReportNever")
                                 : texts_(language_, "ReportLastSeenAt",
                                          locale_.toString(double(h.lastSeenNs) / 1e9, 'f', 1))
                                       .toHtmlEscaped();
            out +=
                "<tr>" + cell(QString::number(h.satId), num) +
                cell(locale_.toString(h.requests), num) + cell(locale_.toString(h.answers), num) +
                cell(locale_.toString(h.missed), h.missed > 0 ? QStringLiteral("num odd") : num) +
                cell(milliseconds(h.medianLatencyNs), num) +
                cell(milliseconds(h.worstLatencyNs), num) +
                cell(lastSeen, h.lastSeenNs < 0 ? QStringLiteral("odd") : QString()) + "</tr>\n";
        }
        return out + "</tbody></table>\n<p class=\"note\">" + t("ReportHealthNote") + "</p>\n";
    }

    const CommissioningReport &report_;
    OwnTexts::Language language_;
    QLocale locale_;
    OwnTexts texts_;
};

} // namespace

QString ReportFormats::html(const CommissioningReport &report, OwnTexts::Language language) {
    return Page(report, language).html();
}
