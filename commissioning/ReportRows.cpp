#include "commissioning/ReportRows.h"

namespace {
QString flag(qint32 enabled) {
    return enabled != 0 ? QStringLiteral("1") : QStringLiteral("0");
}
} // namespace

void expectFromFile(CommissioningReport::Row &row, const FileSatellite &satellite) {
    row.position = satellite.position;
    row.satId = satellite.satId;
    row.expectedInterface = interfaceName(satellite.interfaceCode);
    row.expectedEnabled = flag(satellite.enabled);
}

void foundOnAir(CommissioningReport::Row &row, const SatelliteProbe::Config &config) {
    row.foundInterface = interfaceName(config.interfaceCode);
    row.foundEnabled = flag(config.enabled);
    row.firmware = QStringLiteral("%1.%2").arg(config.rfVersionMajor).arg(config.rfVersionMinor);
}

void foundOnAir(CommissioningReport::Row &row, const SatelliteProbe::Status &status) {
    row.rxFree = QString::number(status.rxFree);
    row.txFree = QString::number(status.txFree);
}

void compareWithFile(CommissioningReport::Row &row, const Wording &words) {
    if (row.foundInterface.isEmpty())
        return;
    if (row.foundInterface != row.expectedInterface)
        row.differences << words("CliSurveyInterface", row.expectedInterface, row.foundInterface);
    const auto yesNo = [&](const QString &flag) {
        return words(flag == u"1" ? "CliYes" : "CliNo");
    };
    if (row.foundEnabled != row.expectedEnabled)
        row.differences << words("CliSurveyEnabled", yesNo(row.expectedEnabled),
                                 yesNo(row.foundEnabled));
}
