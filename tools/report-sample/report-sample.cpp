// Writes the report of a realistic survey of the demo network: satellites 1, 2 and
// 3 as the demo air has them, 3 on another interface than its site file says, 4
// missing. tools/report-sample.sh makes docs/report-page1.png from it.
//   norvale-report-sample [--french] [--more N] REPORT.pdf|.html|.json...
// --more adds N satellites that only answered, to see a table run over pages.
#include "commissioning/PdfModule.h"
#include "commissioning/Report.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <cstdio>
#include <memory>

namespace {

using Row = CommissioningReport::Row;

CommissioningReport demoSurvey(const OwnTexts &texts, OwnTexts::Language language, int more) {
    CommissioningReport report;
    report.when = QDateTime(QDate(2025, 3, 14), QTime(10, 42, 7));
    report.file = QStringLiteral("/home/tech/sites/north-warehouse/site.nvl");
    report.network = texts(language, "NetworkSerial", QStringLiteral("/dev/ttyUSB0"));
    report.port = QStringLiteral("COM1");
    report.baudRate = QStringLiteral("38400");
    const auto onAir = [](int position, qint16 satId, const char *interface, const char *firmware,
                          const char *rx, const char *tx) {
        Row row;
        row.position = position;
        row.satId = satId;
        row.expectedInterface = row.foundInterface = QString::fromLatin1(interface);
        row.expectedEnabled = row.foundEnabled = QStringLiteral("1");
        row.identity = QStringLiteral("QX NORVALE %1").arg(satId);
        row.firmware = QString::fromLatin1(firmware);
        row.rxFree = QString::fromLatin1(rx);
        row.txFree = QString::fromLatin1(tx);
        return row;
    };
    report.rows = {onAir(1, 1, "RS-232", "2.5", "28", "30"),
                   onAir(2, 2, "RS-485", "2.6", "24", "26"),
                   onAir(3, 3, "RS-485", "3.1", "56", "60")};
    report.rows[2].state = Row::State::Differs;
    report.rows[2].expectedInterface = QStringLiteral("RS-232");
    report.rows[2].differences = {
        QStringLiteral("Interface: the file says RS-232, the satellite works on RS-485")};
    Row missing;
    missing.position = 4;
    missing.satId = 4;
    missing.state = Row::State::Missing;
    missing.expectedInterface = QStringLiteral("RS-232");
    missing.expectedEnabled = QStringLiteral("1");
    missing.differences = {QStringLiteral("Did not answer: check its power and its antenna")};
    report.rows.push_back(missing);
    for (int i = 0; i < more; ++i) {
        report.rows.push_back(onAir(0, qint16(100 + i), "RS-485", "2.6", "30", "30"));
        report.rows.back().state = Row::State::Unexpected;
        report.rows.back().expectedInterface.clear();
        report.rows.back().expectedEnabled.clear();
    }
    report.notes = {QStringLiteral("Satellite 4 did not answer 3 detections in a row.")};
    const qint64 ms = 1'000'000;
    report.health = {{1, 12, 12, 0, 38 * ms, 61 * ms, 4100 * ms},
                     {2, 12, 12, 0, 41 * ms, 70 * ms, 4300 * ms},
                     {3, 12, 11, 1, 45 * ms, 95 * ms, 4600 * ms},
                     {4, 3, 0, 3, -1, -1, -1}};
    return report;
}

} // namespace

int main(int argc, char *argv[]) {
    PdfModule pdf(QStringLiteral(NORVALE_PDF_MODULE_DIR));
    QString error;
    if (!pdf.load(error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    const std::unique_ptr<QCoreApplication> app(pdf.makeApplication(argc, argv));
    QCommandLineParser parser;
    parser.addOption({QStringLiteral("french"), QStringLiteral("French words.")});
    parser.addOption({QStringLiteral("more"), QStringLiteral("N satellites more."),
                      QStringLiteral("N"), QStringLiteral("0")});
    parser.addPositionalArgument(QStringLiteral("report"), QStringLiteral(".pdf, .html or .json"));
    parser.addHelpOption();
    parser.process(*app);
    const OwnTexts texts;
    const auto language =
        parser.isSet(QStringLiteral("french")) ? OwnTexts::French : OwnTexts::English;
    const CommissioningReport report =
        demoSurvey(texts, language, parser.value(QStringLiteral("more")).toInt());
    int status = 0;
    for (const QString &file : parser.positionalArguments()) {
        if (!writeReport(report, file, language, error, &pdf)) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            status = 1;
        }
    }
    return status;
}
