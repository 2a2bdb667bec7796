// The live test: fifteen satellites answering at once (the simulator at zero
// delay), the test grid updating, and key presses reaching the window meanwhile.
#include "BenchWindow.h"
#include "Clock.h"
#include "Report.h"
#include "Sections.h"
#include "radionet/SimulatedRadioNet.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>

namespace {

constexpr int Satellites = 15;
constexpr double RateBudget = 10000;  // answers handled per second
constexpr double InputBudgetMs = 100; // a key press still felt as immediate
constexpr int AnswersPerProbe = 500;  // a key press is posted every so many answers
constexpr int DirectCalls = 20000;    // calls of the handler alone, per run

// Posts a key press to the grid now and then and takes the time until the grid
// receives it: the window answering input while the answers pour in.
class InputProbe : public QObject {
public:
    explicit InputProbe(QWidget &target)
        : target_(target) {
        target.installEventFilter(this);
    }

    void post() {
        if (outstanding_)
            return;
        outstanding_ = true;
        postedAt_ = benchclock::monotonicNs();
        // Shift alone: the grid receives it and does nothing with it.
        QCoreApplication::postEvent(&target_,
                                    new QKeyEvent(QEvent::KeyPress, Qt::Key_Shift, Qt::NoModifier));
    }
    std::vector<double> latenciesMs;

protected:
    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() == QEvent::KeyPress && outstanding_) {
            latenciesMs.push_back(double(benchclock::monotonicNs() - postedAt_) / 1e6);
            outstanding_ = false;
        }
        return false;
    }

private:
    QWidget &target_;
    bool outstanding_ = false;
    std::int64_t postedAt_ = 0;
};

// Counts the paints of one widget.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget &widget) { widget.installEventFilter(this); }
    int paints = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

bool allRowsAnswered(const QTableWidget &grid) {
    for (int row = 1; row <= Satellites; ++row) {
        if (grid.item(row, 1)->text() != QLatin1String("     OK"))
            return false;
    }
    return true;
}

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
    if (!window.shown() || !tabs || !grid || !start || !timer2 ||
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
    if (!waitUntil([&] { return allRowsAnswered(*grid); }, (Satellites + 5) * 500)) {
        report.fail(number, measure, QStringLiteral("not every satellite answered"));
        return;
    }

    std::vector<double> rates, cpuUs, wallUs, paintRates, tickRates;
    probe.latenciesMs.clear();
    for (int run = 0; run < options.liveWindows; ++run) {
        const qint64 answersBefore = answers;
        const int paintsBefore = gridPaints.paints;
        const int ticksBefore = ticks;
        const std::int64_t cpu = benchclock::cpuNs();
        const std::int64_t wall = benchclock::monotonicNs();
        runEventLoopFor(options.liveWindowMs);
        const double seconds = double(benchclock::monotonicNs() - wall) / 1e9;
        const double handled = double(answers - answersBefore);
        if (handled < 1) {
            report.fail(number, measure, QStringLiteral("no answer was handled"));
            return;
        }
        rates.push_back(handled / seconds);
        cpuUs.push_back(double(benchclock::cpuNs() - cpu) / 1e3 / handled);
        wallUs.push_back(seconds * 1e6 / handled);
        paintRates.push_back((gridPaints.paints - paintsBefore) / seconds);
        tickRates.push_back((ticks - ticksBefore) / seconds);
    }
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

    const double rate = benchclock::median(rates);
    const std::vector<double> &latencies = probe.latenciesMs;
    const double worstMs =
        latencies.empty() ? 0 : *std::max_element(latencies.begin(), latencies.end());
    const bool answered = !latencies.empty() && worstMs <= InputBudgetMs;

    report.add({QStringLiteral("6a"),
                QStringLiteral("Live test, %1 satellites: StatusReceived handled").arg(Satellites),
                formatCount(rate) + QStringLiteral(" /s"),
                QStringLiteral("grid painted %1 /s, Timer2 %2 ticks/s, %3 x %4 ms")
                    .arg(formatCount(benchclock::median(paintRates)))
                    .arg(benchclock::median(tickRates), 0, 'f', 1)
                    .arg(options.liveWindows)
                    .arg(options.liveWindowMs),
                QStringLiteral(">= %1 /s").arg(formatCount(RateBudget)),
                rate >= RateBudget ? Report::Verdict::Kept : Report::Verdict::Missed});
    report.add({QStringLiteral("6b"),
                QStringLiteral("Cost per StatusReceived in the running test (CPU)"),
                formatUs(benchclock::median(cpuUs)),
                QStringLiteral("wall per answer %1").arg(formatUs(benchclock::median(wallUs))),
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
    report.note(QStringLiteral("Live test: the simulated network's call log held %1 entries at "
                               "the end.")
                    .arg(formatCount(double(logged))));
}
