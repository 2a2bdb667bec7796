#include "commissioning/ReportFormats.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

// Unknown values are null, never an empty string or a made-up number.
QJsonValue text(const QString &value) {
    return value.isEmpty() ? QJsonValue() : QJsonValue(value);
}

QJsonValue number(const QString &value) {
    bool ok = false;
    const qint64 n = value.toLongLong(&ok);
    return ok ? QJsonValue(n) : QJsonValue();
}

QJsonValue milliseconds(qint64 ns) {
    return ns < 0 ? QJsonValue() : QJsonValue(double(ns) / 1e6);
}

QJsonObject satellite(const CommissioningReport::Row &row) {
    return {{"position", row.position > 0 ? QJsonValue(row.position) : QJsonValue()},
            {"satId", row.satId},
            {"state", stateName(row.state)},
            {"expectedInterface", text(row.expectedInterface)},
            {"foundInterface", text(row.foundInterface)},
            {"expectedEnabled", number(row.expectedEnabled)},
            {"foundEnabled", number(row.foundEnabled)},
            {"identity", text(row.identity)},
            {"firmware", text(row.firmware)},
            {"rxFreeKB", number(row.rxFree)},
            {"txFreeKB", number(row.txFree)},
            {"differences", QJsonArray::fromStringList(row.differences)}};
}

QJsonObject health(const NetworkLog::Health &h) {
    return {{"satId", h.satId},
            {"requests", qint64(h.requests)},
            {"answers", qint64(h.answers)},
            {"missed", qint64(h.missed)},
            {"medianLatencyMs", milliseconds(h.medianLatencyNs)},
            {"worstLatencyMs", milliseconds(h.worstLatencyNs)},
            {"lastSeenMs", milliseconds(h.lastSeenNs)}};
}

} // namespace

QByteArray ReportFormats::json(const CommissioningReport &report) {
    QJsonObject summary{{"satellites", qint64(report.rows.size())}};
    for (State state : AllStates)
        summary.insert(stateName(state), count(report, state));
    QJsonArray satellites, healthRows;
    for (const auto &row : report.rows)
        satellites.append(satellite(row));
    for (const auto &h : report.health)
        healthRows.append(health(h));
    const QJsonObject root{
        {"schema", "norvale-report/1"},
        {"kind", report.kind == CommissioningReport::Kind::Survey ? "survey" : "test"},
        // In UTC, so that the time reads the same anywhere.
        {"when", report.when.isValid() ? QJsonValue(report.when.toUTC().toString(Qt::ISODate))
                                       : QJsonValue()},
        {"file", report.file},
        {"network", report.network},
        {"port", text(report.port)},
        {"baudRate", number(report.baudRate)},
        {"rounds", report.rounds},
        {"clean", report.clean()},
        {"summary", summary},
        {"satellites", satellites},
        {"notes", QJsonArray::fromStringList(report.notes)},
        {"health", healthRows}};
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}
