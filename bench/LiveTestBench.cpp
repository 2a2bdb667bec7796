// The live test: fifteen satellites answering at once (the simulator at zero
// delay), the test grid updating, and key presses reaching the window meanwhile;
// and what the recorder of the network log costs on top.
#include "BenchWindow.h"
#include "Clock.h"
#include "LiveProbes.h"
#include "Report.h"
#include "Sections.h"
#include "radionet/RecordingRadioNet.h"
#include "radionet/SimulatedRadioNet.h"

#include <QAbstractButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>

namespace {

constexpr int Satellites = 15;
constexpr double RateBudget = 10000;    // answers handled per second
constexpr double InputBudgetMs = 100;   // a key press still felt as immediate
constexpr double RecorderBudget = 1.10; // cost per answer, recording on / off
constexpr int AnswersPerProbe = 500;    // a key press is posted every so many answers
constexpr int DirectCalls = 20000;      // calls of the handler alone, per run

// The figures of the measuring windows taken with the recorder on, or off.
struct Series {
    std::vector<double> rates, cpuUs, wallUs, paintRates, tickRates;
};

} // namespace

void benchLiveTest(Report &report, const BenchOptions &options) {
    const QString number = QStringLiteral("6");
    const QString measure = QStringLiteral("Live test");
    BenchWindow window(
        [](const QString &folder) {
            const QString file = folder + QStringLiteral("/site15.nvl");
            return writeNetworkFile(file, Satellites) ? file : QString();
        },
        [](SimulatedRadioNet &net) {
            net.setAnswerDelayMs(0);
            for (qint16 id = 1; id <= Satellites; ++id)
                net.putOnAir(OnAirSatellite{.satId = id});
        });
    SimulatedRadioNet &net = window.net();
    auto *tabs = window.w<QTabWidget>("Onglet1");
    auto *grid = window.w<QTableWidget>("MFG2");
    auto *start = window.w<QAbstractButton>("b_Debut_test");
    auto *timer2 = window.w<QTimer>("Timer2");
    RecordingRadioNet *recorder = window.recorder();
    if (!window.shown() || !tabs || !grid || !start || !timer2 || !recorder ||
        net.Satellites().Count() != Satellites) {
        report.fail(number, measure,
                    QStringLiteral("the window did not come up with 15 satellites"));
        return;
    }

    tabs->setCurrentIndex(2); // the test tab starts the network
    if (net.LinkState() != 2) {
        report.fail(number, measure, QStringLiteral("the test tab did not start polling"));
        return;
    }

    QObject context;
    qint64 answers = 0;
    InputProbe probe(*grid);
    PaintCounter gridPaints(*grid->viewport());
    int ticks = 0;
    QObject::connect(&net, &RadioNetControl::StatusReceived, &context, [&] {
        if (++answers % AnswersPerProbe == 0)
            probe.post();
    });
    QObject::connect(timer2, &QTimer::timeout, &context, [&ticks] { ++ticks; });

    start->click();
    // Timer2 addresses one satellite per tick: after fifteen ticks all of them are
    // polled continuously.
    if (!waitUntil([&] { return allRowsAnswered(*grid, Satellites); }, (Satellites + 5) * 500)) {
        report.fail(number, measure, QStringLiteral("not every satellite answered"));
        return;
    }

    // One measuring window: the answers handled, the CPU time, the repaints, the ticks.
    const auto measureWindow = [&](int ms, Series &series) {
        const qint64 answersBefore = answers;
        const int paintsBefore = gridPaints.paints;
        const int ticksBefore = ticks;
        const std::int64_t cpu = benchclock::cpuNs();
        const std::int64_t wall = benchclock::monotonicNs();
        runEventLoopFor(ms);
        const double seconds = double(benchclock::monotonicNs() - wall) / 1e9;
        const double handled = double(answers - answersBefore);
        if (handled < 1)
            return false;
        series.rates.push_back(handled / seconds);
        series.cpuUs.push_back(double(benchclock::cpuNs() - cpu) / 1e3 / handled);
        series.wallUs.push_back(seconds * 1e6 / handled);
        series.paintRates.push_back((gridPaints.paints - paintsBefore) / seconds);
        series.tickRates.push_back((ticks - ticksBefore) / seconds);
        return true;
    };
    Series running;
    probe.latenciesMs.clear();
    for (int run = 0; run < options.liveWindows; ++run) {
        if (!measureWindow(options.liveWindowMs, running)) {
            report.fail(number, measure, QStringLiteral("no answer was handled"));
            return;
        }
    }
    // The recorder on and off in turn (on, off, off, on, ...), in short windows: a
    // pair of neighbouring windows sees the machine alike, and a burst of other work
    // spoils one pair of many.
    Series on, off;
    for (int run = 0; run < 2 * options.recorderPairs; ++run) {
        const bool recording = run % 4 == 0 || run % 4 == 3;
        recorder->setRecording(recording);
        if (!measureWindow(options.recorderWindowMs, recording ? on : off)) {
            report.fail(number, measure, QStringLiteral("no answer was handled"));
            return;
        }
    }
    recorder->setRecording(true);
    const qsizetype logged = net.callLog().size();

    // The handler alone: the answer emitted straight into it, without the event
    // loop and the repaint that follow. Each call asks for the next status, which
    // is left to arrive after the test has ended.
    QObject::disconnect(&net, nullptr, &context, nullptr);
    std::vector<double> handlerUs;
    for (int run = 0; run < options.liveWindows; ++run) {
        const std::int64_t wall = benchclock::monotonicNs();
        for (int call = 0; call < DirectCalls; ++call)
            emit net.StatusReceived(qint16(1 + call % Satellites));
        handlerUs.push_back(double(benchclock::monotonicNs() - wall) / 1e3 / DirectCalls);
    }

    // Back to the general tab: the test ends and the port is closed.
    tabs->setCurrentIndex(0);
    runEventLoopFor(100);

    const double rate = benchclock::median(running.rates);
    const double costOn = benchclock::median(on.cpuUs);
    const double costOff = benchclock::median(off.cpuUs);
    std::vector<double> pairRatios;
    for (std::size_t k = 0; k < on.cpuUs.size() && k < off.cpuUs.size(); ++k)
        pairRatios.push_back(on.cpuUs[k] / off.cpuUs[k]);
    const double recorderRatio = benchclock::median(pairRatios);
    const std::vector<double> &latencies = probe.latenciesMs;
    const double worstMs =
        latencies.empty() ? 0 : *std::max_element(latencies.begin(), latencies.end());
    const bool answered = !latencies.empty() && worstMs <= InputBudgetMs;

    report.add({QStringLiteral("6a"),
                QStringLiteral("Live test, %1 satellites: StatusReceived handled").arg(Satellites),
                formatCount(rate) + QStringLiteral(" /s"),
                QStringLiteral("grid painted %1 /s, Timer2 %2 ticks/s, %3 x %4 ms")
                    .arg(formatCount(benchclock::median(running.paintRates)))
                    .arg(benchclock::median(running.tickRates), 0, 'f', 1)
                    .arg(options.liveWindows)
                    .arg(options.liveWindowMs),
                QStringLiteral(">= %1 /s").arg(formatCount(RateBudget)),
                rate >= RateBudget ? Report::Verdict::Kept : Report::Verdict::Missed});
    report.add(
        {QStringLiteral("6b"), QStringLiteral("Cost per StatusReceived in the running test (CPU)"),
         formatUs(benchclock::median(running.cpuUs)),
         QStringLiteral("wall per answer %1").arg(formatUs(benchclock::median(running.wallUs))),
         QString(), Report::Verdict::NoBudget});
    report.add({QStringLiteral("6c"), QStringLiteral("RF1_StatusReceived alone, per call"),
                formatUs(benchclock::median(handlerUs)),
                QStringLiteral("%1 x %2 calls, emitted directly")
                    .arg(options.liveWindows)
                    .arg(formatCount(DirectCalls)),
                QString(), Report::Verdict::NoBudget});
    report.add(
        {QStringLiteral("6d"), QStringLiteral("Key press during the live test: latency"),
         formatMs(benchclock::median(latencies)),
         QStringLiteral("worst %1 of %2 key presses").arg(formatMs(worstMs)).arg(latencies.size()),
         QStringLiteral("<= %1").arg(formatMs(InputBudgetMs)),
         answered ? Report::Verdict::Kept : Report::Verdict::Missed});
    report.add(
        {QStringLiteral("6e"),
         QStringLiteral("Recorder of the network log: cost per answer, on / off"),
         formatRatio(recorderRatio),
         QStringLiteral("on %1, off %2 (CPU); %3 /s on, %4 /s off; %5 pairs of %6 ms")
             .arg(formatUs(costOn), formatUs(costOff), formatCount(benchclock::median(on.rates)),
                  formatCount(benchclock::median(off.rates)))
             .arg(options.recorderPairs)
             .arg(options.recorderWindowMs),
         QStringLiteral("<= %1").arg(formatRatio(RecorderBudget)),
         recorderRatio <= RecorderBudget ? Report::Verdict::Kept : Report::Verdict::Missed});
    report.note(QStringLiteral("Live test: 6e is the median of the ratios of neighbouring "
                               "windows, one with the recorder on, one off. The recorder "
                               "recorded %1 calls and events in all.")
                    .arg(formatCount(double(recorder->log().lastNumber()))));
    report.note(QStringLiteral("Live test: the simulated network's call log held %1 entries at "
                               "the end.")
                    .arg(formatCount(double(logged))));
}
