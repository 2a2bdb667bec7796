// The command line: `norvale-cli check FILE`, the whole process from its start to its
// end, against `true` started and waited for the same way.
#include "BenchWindow.h"
#include "Clock.h"
#include "Report.h"
#include "Sections.h"
#include "Spawn.h"

#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace {

constexpr double CheckBudgetMs = 15; // above `true`
constexpr int ChildTimeoutMs = 30000;

} // namespace

void benchCli(Report &report, const BenchOptions &options) {
    const QString number = QStringLiteral("8");
    const QString measure = QStringLiteral("norvale-cli check");
    // Built at the top of the build folder, the bench one folder down.
    const QString cli = QDir::cleanPath(options.programDir + QStringLiteral("/../norvale-cli"));
    const QString floor = QStandardPaths::findExecutable(QStringLiteral("true"));
    QTemporaryDir scratch(options.programDir + QStringLiteral("/cli-XXXXXX"));
    const QString file = scratch.filePath(QStringLiteral("site16.nvl"));
    if (!scratch.isValid() || floor.isEmpty() || !writeNetworkFile(file, 16))
        return report.fail(number, measure, QStringLiteral("cannot prepare the file"));

    struct Subject {
        QString program;
        QStringList arguments;
        std::vector<double> ms;
    };
    std::vector<Subject> subjects{{floor, {}, {}}, {cli, {QStringLiteral("check"), file}, {}}};
    // One run of each first, unmeasured: the page cache then holds both programs.
    for (int run = -1; run < options.cliRuns; ++run) {
        for (Subject &subject : subjects) {
            const Finished done = runProgram(subject.program, subject.arguments, ChildTimeoutMs);
            if (!done.succeeded())
                return report.fail(
                    number, measure,
                    QStringLiteral("%1: %2").arg(subject.program, done.output.left(200)));
            if (run >= 0)
                subject.ms.push_back(double(done.endedNs - done.startedNs) / 1e6);
        }
    }
    const double floorMs = benchclock::median(subjects[0].ms);
    const double checkMs = benchclock::median(subjects[1].ms);
    report.add(
        {number, QStringLiteral("norvale-cli check, a 16-satellite file: whole process"),
         formatMs(checkMs),
         QStringLiteral("true %1: %2 more, %3 runs each in turn")
             .arg(formatMs(floorMs), formatMs(checkMs - floorMs))
             .arg(options.cliRuns),
         QStringLiteral("<= true + %1").arg(formatMs(CheckBudgetMs)),
         checkMs - floorMs <= CheckBudgetMs ? Report::Verdict::Kept : Report::Verdict::Missed});
}
