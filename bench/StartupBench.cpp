// Start-up and peak memory: the program and the floor program are started in turn,
// each as a fresh process, and report when their window is ready.
#include "BenchWindow.h"
#include "Clock.h"
#include "Report.h"
#include "Sections.h"
#include "Spawn.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <optional>
#include <vector>

namespace {

constexpr int ChildTimeoutMs = 30000;
constexpr double StartupBudget = 1.3;
constexpr double MemoryBudget = 1.3;

struct Ready {
    double startupMs;
    double peakRssKiB;
    double cpuMs;
};

struct Series {
    std::vector<double> startupMs;
    std::vector<double> peakRssKiB;
    std::vector<double> cpuMs;
};

// Starts the program and waits for its "ready" line. The program's standard error
// goes to the same pipe, so that a failure can be shown.
std::optional<Ready> startOnce(const QString &program, const QStringList &arguments,
                               QString &output) {
    const Finished run = runProgram(program, arguments, ChildTimeoutMs);
    output = run.output;
    if (!run.succeeded())
        return std::nullopt;
    for (const QString &line : output.split(u'\n')) {
        const QStringList fields = line.trimmed().split(u' ');
        if (fields.size() == 4 && fields[0] == QLatin1String("ready"))
            return Ready{double(fields[1].toLongLong() - run.startedNs) / 1e6, fields[2].toDouble(),
                         fields[3].toDouble() / 1e6};
    }
    return std::nullopt;
}

// A copy of the program in a folder of its own: its "Setup.ini" is then kept only
// by starts of one kind, as on a technician's machine.
QString installCopy(const QString &program, const QString &folder) {
    const QString copy = folder + QStringLiteral("/norvale-startup");
    if (!QDir().mkpath(folder) || !QFile::copy(program, copy) ||
        !QFile::setPermissions(copy, QFile::permissions(program)))
        return QString();
    return copy;
}

} // namespace

void benchStartup(Report &report, const BenchOptions &options) {
    const QString floorProgram = options.programDir + QStringLiteral("/norvale-floor");
    // Beside the bench, on the disk the program is built on, not in a temporary
    // folder that may be held in memory.
    QTemporaryDir scratch(options.programDir + QStringLiteral("/startup-XXXXXX"));
    const QString networkFile = scratch.filePath(QStringLiteral("site16.nvl"));
    const QString source = options.programDir + QStringLiteral("/norvale-startup");
    const QString plainProgram = installCopy(source, scratch.filePath(QStringLiteral("plain")));
    const QString fileProgram = installCopy(source, scratch.filePath(QStringLiteral("file")));
    if (!scratch.isValid() || plainProgram.isEmpty() || fileProgram.isEmpty() ||
        !writeNetworkFile(networkFile, 16)) {
        report.fail(QStringLiteral("1"), QStringLiteral("Start-up"),
                    QStringLiteral("cannot prepare the program folders"));
        return;
    }

    struct Subject {
        QString program;
        QStringList arguments;
        Series series;
    };
    std::vector<Subject> subjects{
        {floorProgram, {}, {}}, {plainProgram, {}, {}}, {fileProgram, {networkFile}, {}}};

    // One start of each first, unmeasured: the page cache and the settings file of
    // the program folder are then as they are on every later start.
    for (int run = -1; run < options.startupRuns; ++run) {
        for (Subject &subject : subjects) {
            QString output;
            const std::optional<Ready> ready =
                startOnce(subject.program, subject.arguments, output);
            if (!ready) {
                report.fail(QStringLiteral("1"), QStringLiteral("Start-up"),
                            QStringLiteral("%1: %2").arg(subject.program, output.left(200)));
                return;
            }
            if (run >= 0) {
                subject.series.startupMs.push_back(ready->startupMs);
                subject.series.peakRssKiB.push_back(ready->peakRssKiB);
                subject.series.cpuMs.push_back(ready->cpuMs);
            }
        }
    }

    auto medianOf = [&subjects](std::size_t subject, std::vector<double> Series::*figure) {
        return benchclock::median(subjects[subject].series.*figure);
    };
    const double floorMs = medianOf(0, &Series::startupMs);
    const double mainMs = medianOf(1, &Series::startupMs);
    const double fileMs = medianOf(2, &Series::startupMs);
    const double floorCpu = medianOf(0, &Series::cpuMs);
    const double mainCpu = medianOf(1, &Series::cpuMs);
    const double floorRss = medianOf(0, &Series::peakRssKiB);
    const double mainRss = medianOf(1, &Series::peakRssKiB);
    const double fileRss = medianOf(2, &Series::peakRssKiB);
    const auto verdict = [](double ratio, double budget) {
        return ratio <= budget ? Report::Verdict::Kept : Report::Verdict::Missed;
    };
    const auto toFloor = [&](const QString &floor, double ratio) {
        return QStringLiteral("floor %1: %2").arg(floor, formatRatio(ratio));
    };
    const auto mib = [](double kib) { return QStringLiteral("%1 MiB").arg(kib / 1024, 0, 'f', 1); };

    report.add({QStringLiteral("1"), QStringLiteral("Start-up to first idle turn"),
                formatMs(mainMs), toFloor(formatMs(floorMs), mainMs / floorMs),
                QStringLiteral("<= %1 floor").arg(formatRatio(StartupBudget)),
                verdict(mainMs / floorMs, StartupBudget)});
    report.add({QStringLiteral("1b"), QStringLiteral("CPU time of that start-up"),
                formatMs(mainCpu), toFloor(formatMs(floorCpu), mainCpu / floorCpu), QString(),
                Report::Verdict::NoBudget});
    report.add({QStringLiteral("1c"), QStringLiteral("Start-up with a 16-satellite file to open"),
                formatMs(fileMs), toFloor(formatMs(floorMs), fileMs / floorMs), QString(),
                Report::Verdict::NoBudget});
    report.add({QStringLiteral("2"), QStringLiteral("Peak resident memory after start-up"),
                mib(mainRss), toFloor(mib(floorRss), mainRss / floorRss),
                QStringLiteral("<= %1 floor").arg(formatRatio(MemoryBudget)),
                verdict(mainRss / floorRss, MemoryBudget)});
    report.add({QStringLiteral("2b"), QStringLiteral("Peak memory, 16-satellite file opened"),
                mib(fileRss), toFloor(mib(floorRss), fileRss / floorRss), QString(),
                Report::Verdict::NoBudget});
    report.note(QStringLiteral("Start-up: from just before the process is made to the first zero "
                               "timer after the window's first paint; the floor and the program "
                               "started in turn, %1 starts each.")
                    .arg(options.startupRuns));
}
