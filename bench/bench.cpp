// `make bench`: every figure of the performance budget, each a median of repeated
// runs, printed as one table. Google Benchmark options (--benchmark_...) apply to
// the file figures.
#include "Report.h"
#include "Sections.h"

#include <QApplication>
#include <QStringList>
#include <benchmark/benchmark.h>
#include <cstdio>

namespace {

void usage() {
    std::fprintf(
        stderr, "usage: norvale-bench [--quick] [--only startup,pause,idle,files,live,serial,cli]\n"
                "  --quick  fewer repetitions and a 2 s idle stretch, for a first look\n");
}

} // namespace

int main(int argc, char *argv[]) {
    // The programs the start-up figures start inherit the platform too.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);

    BenchOptions options;
    options.programDir = QApplication::applicationDirPath();
    QStringList sections{QStringLiteral("startup"), QStringLiteral("pause"),
                         QStringLiteral("idle"),    QStringLiteral("files"),
                         QStringLiteral("live"),    QStringLiteral("serial"),
                         QStringLiteral("cli")};
    for (int i = 1; i < argc; ++i) {
        const QString arg = QString::fromLocal8Bit(argv[i]);
        if (arg == QLatin1String("--quick")) {
            options.startupRuns = 7;
            options.pauseRuns = 5;
            options.idleRuns = 1;
            options.idleSeconds = 2;
            options.fileRepetitions = 3;
            options.liveWindows = 3;
            options.liveWindowMs = 1000;
            options.recorderPairs = 8;
            options.recorderWindowMs = 250;
            options.serialRuns = 3;
            options.cliRuns = 7;
        } else if (arg == QLatin1String("--only") && i + 1 < argc) {
            sections = QString::fromLocal8Bit(argv[++i]).split(u',', Qt::SkipEmptyParts);
        } else {
            usage();
            return 2;
        }
    }

    Report report;
    if (sections.contains(QLatin1String("startup")))
        benchStartup(report, options);
    if (sections.contains(QLatin1String("pause")))
        benchPause(report, options);
    if (sections.contains(QLatin1String("idle")))
        benchIdle(report, options);
    if (sections.contains(QLatin1String("files")))
        benchFiles(report, options);
    if (sections.contains(QLatin1String("live")))
        benchLiveTest(report, options);
    if (sections.contains(QLatin1String("serial")))
        benchSerial(report, options);
    if (sections.contains(QLatin1String("cli")))
        benchCli(report, options);
    report.print();
    benchmark::Shutdown();
    return report.allKept() ? 0 : 1;
}
