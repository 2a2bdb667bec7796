// The configuration file: reading and writing a 16-satellite file, and the cost of
// one key written by the profile writer, measured with Google Benchmark.
#include "BenchWindow.h"
#include "Report.h"
#include "Sections.h"
#include "config/ConfigFile.h"
#include "config/Globale.h"
#include "platform/ProfileString.h"
#include "radionet/SimulatedRadioNet.h"

#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <map>
#include <string>

namespace {

// Keys WriteConfigFile writes: 13 of "General" and "Devices", 3 per section of 16.
constexpr int KeysPerFile = 13 + 3 * 16;

// Keeps the median of every benchmark's repetitions, and the first error, instead
// of printing Google Benchmark's own table.
class MedianCollector : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context &) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override {
        for (const Run &run : runs) {
            if (run.error_occurred && error.empty())
                error = run.run_name.function_name + ": " + run.error_message;
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
                medianUs[run.run_name.function_name] = run.GetAdjustedRealTime();
                medianCpuUs[run.run_name.function_name] = run.GetAdjustedCPUTime();
            }
        }
    }

    std::map<std::string, double> medianUs;    // wall time per call
    std::map<std::string, double> medianCpuUs; // CPU time per call: the rest is the disk
    std::string error;
};

} // namespace

void benchFiles(Report &report, const BenchOptions &options) {
    QTemporaryDir scratch;
    const QString readFile = scratch.filePath(QStringLiteral("read.nvl"));
    const QString writeFile = scratch.filePath(QStringLiteral("write.nvl"));
    const QString keyFile = scratch.filePath(QStringLiteral("key.nvl"));
    if (!writeNetworkFile(readFile, 16) || !QFile::copy(readFile, keyFile)) {
        report.fail(QStringLiteral("5"), QStringLiteral("Configuration file"),
                    QStringLiteral("cannot write the 16-satellite file"));
        return;
    }

    SimulatedRadioNet source;
    for (int id = 1; id <= 16; ++id)
        source.Satellites().Add(qint16(id))->setInterface(qint16(id % 2));
    Globale g;
    g.FirstDevice = 1;
    g.LastDevice = 32;

    const auto configure = [&options](benchmark::internal::Benchmark *bench) {
        bench->Unit(benchmark::kMicrosecond)
            ->UseRealTime()
            ->Repetitions(options.fileRepetitions)
            ->ReportAggregatesOnly(true);
    };
    configure(benchmark::RegisterBenchmark("ReadConfigFile", [&](benchmark::State &state) {
        SimulatedRadioNet net;
        for (auto _ : state) {
            if (!ReadConfigFile(readFile, net) || net.Satellites().Count() != 16) {
                state.SkipWithError("the file did not read back");
                break;
            }
            net.clearCallLog(); // the simulator logs every call; it must not grow
        }
    }));
    configure(benchmark::RegisterBenchmark("WriteConfigFile", [&](benchmark::State &state) {
        for (auto _ : state) {
            // A full list of sixteen answers false although the file is complete.
            WriteConfigFile(writeFile, source, g);
        }
        SimulatedRadioNet check;
        if (!ReadConfigFile(writeFile, check) || check.Satellites().Count() != 16)
            state.SkipWithError("the written file did not read back");
    }));
    configure(
        benchmark::RegisterBenchmark("WritePrivateProfileString", [&](benchmark::State &state) {
            bool enabled = false;
            for (auto _ : state) {
                enabled = !enabled;
                // The last key of the last section: the whole file is scanned.
                if (!WritePrivateProfileString(
                        QStringLiteral("Satellite16"), QStringLiteral("Enabled"),
                        enabled ? QStringLiteral("1") : QStringLiteral("0"), keyFile)) {
                    state.SkipWithError("the key was not written");
                    break;
                }
            }
        }));

    MedianCollector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    // The benchmarks refer to this function's files and network.
    benchmark::ClearRegisteredBenchmarks();
    if (!collector.error.empty() || collector.medianUs.size() != 3) {
        report.fail(
            QStringLiteral("5"), QStringLiteral("Configuration file"),
            QString::fromStdString(collector.error.empty() ? "no result" : collector.error));
        return;
    }
    auto figure = [&collector](const char *name) {
        return QStringLiteral("%1 (CPU %2)")
            .arg(formatUs(collector.medianUs[name]), formatUs(collector.medianCpuUs[name]));
    };
    const QString repetitions = QStringLiteral("%1 repetitions").arg(options.fileRepetitions);
    const double writeUs = collector.medianUs["WriteConfigFile"];
    report.add({QStringLiteral("5a"), QStringLiteral("ReadConfigFile, 16 satellites, per call"),
                figure("ReadConfigFile"), repetitions, QString(), Report::Verdict::NoBudget});
    report.add({QStringLiteral("5b"), QStringLiteral("WriteConfigFile, 16 satellites, per call"),
                figure("WriteConfigFile"),
                QStringLiteral("%1 keys: %2 per key")
                    .arg(KeysPerFile)
                    .arg(formatUs(writeUs / KeysPerFile)),
                QString(), Report::Verdict::NoBudget});
    report.add(
        {QStringLiteral("5c"), QStringLiteral("Profile writer, one key of a 16-satellite file"),
         figure("WritePrivateProfileString"), repetitions, QString(), Report::Verdict::NoBudget});
    report.note(QStringLiteral("Files: wall time per call with its CPU time; the difference is "
                               "the wait for the disk (every key written is flushed to it)."));
}
