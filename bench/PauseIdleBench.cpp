// The pause and the idle window: how much CPU the program uses while it waits.
#include "BenchWindow.h"
#include "Clock.h"
#include "Report.h"
#include "Sections.h"
#include "config/Globale.h"
#include "platform/HandlerGuard.h"
#include "radionet/SimulatedRadioNet.h"
#include "radionet/gui/Pause.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QCoreApplication>
#include <QMap>
#include <QTabWidget>
#include <QTimer>
#include <QTimerEvent>
#include <cstdio>

namespace {

constexpr double PauseBudget = 0.02;

struct Share {
    double cpuNs;
    double wallNs;
};

template <typename F> Share measure(F &&work) {
    const std::int64_t cpu = benchclock::cpuNs();
    const std::int64_t wall = benchclock::monotonicNs();
    work();
    return {double(benchclock::cpuNs() - cpu), double(benchclock::monotonicNs() - wall)};
}

bool insideWindow(const QObject *object, const QObject *window) {
    for (; object; object = object->parent()) {
        if (object == window)
            return true;
    }
    return false;
}

// Counts the timer events that reach the window or anything it owns, by class.
class TimerWatch : public QObject {
public:
    explicit TimerWatch(const QObject &window)
        : window_(window) {
        QCoreApplication::instance()->installEventFilter(this);
    }

    int count() const { return count_; }
    QMap<QString, int> byReceiver() const { return byReceiver_; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Timer && insideWindow(watched, &window_)) {
            ++count_;
            QString name = QString::fromLatin1(watched->metaObject()->className());
            if (!watched->objectName().isEmpty())
                name += u' ' + watched->objectName();
            ++byReceiver_[name];
        }
        return false;
    }

private:
    const QObject &window_;
    int count_ = 0;
    QMap<QString, int> byReceiver_;
};

QStringList activeTimers(const QObject &window) {
    QStringList active;
    for (const QTimer *timer : window.findChildren<QTimer *>()) {
        if (timer->isActive())
            active.append(timer->objectName().isEmpty() ? QStringLiteral("(unnamed)")
                                                        : timer->objectName());
    }
    return active;
}

} // namespace

void benchPause(Report &report, const BenchOptions &options) {
    // The pause on its own: a Globale and a 50 ms timer whose tick counts, as the
    // window wires them.
    {
        HandlerGuard guard(
            [](const QString &text) { std::fprintf(stderr, "pause: %s\n", qPrintable(text)); });
        Globale g;
        QTimer timer1;
        timer1.setInterval(50);
        Pause pause(g, timer1);
        QObject::connect(&timer1, &QTimer::timeout, guard(&pause, &Pause::Timer1_Timer));

        std::vector<double> shares, walls;
        for (int run = 0; run < options.pauseRuns; ++run) {
            const Share share = measure([&] { pause.run(); });
            if (g.WaitTicks != 5 || timer1.isActive()) {
                report.fail(QStringLiteral("3"), QStringLiteral("Pause"),
                            QStringLiteral("the pause did not end after five ticks"));
                return;
            }
            shares.push_back(share.cpuNs / share.wallNs);
            walls.push_back(share.wallNs / 1e6);
        }
        const double share = benchclock::median(shares);
        report.add({QStringLiteral("3"), QStringLiteral("Pause: CPU time / wall time"),
                    formatPercent(share),
                    QStringLiteral("%1 wall per pause, %2 pauses")
                        .arg(formatMs(benchclock::median(walls)))
                        .arg(options.pauseRuns),
                    QStringLiteral("<= %1").arg(formatPercent(PauseBudget)),
                    share <= PauseBudget ? Report::Verdict::Kept : Report::Verdict::Missed});
    }

    // The pauses as the technician meets them: changing between the general and the
    // satellite tab closes and reopens the port, a pause after each step.
    BenchWindow window;
    auto *tabs = window.w<QTabWidget>("Onglet1");
    if (!window.shown() || !tabs) {
        report.fail(QStringLiteral("3b"), QStringLiteral("Tab changes"),
                    QStringLiteral("the window did not come up"));
        return;
    }
    std::vector<double> shares, walls;
    for (int run = 0; run < options.pauseRuns; ++run) {
        for (int tab : {1, 0}) {
            const Share share = measure([&] { tabs->setCurrentIndex(tab); });
            shares.push_back(share.cpuNs / share.wallNs);
            walls.push_back(share.wallNs / 1e6);
        }
    }
    report.add({QStringLiteral("3b"),
                QStringLiteral("Tab change general <-> satellites: CPU / wall"),
                formatPercent(benchclock::median(shares)),
                QStringLiteral("%1 wall per change (one or two pauses), %2 changes")
                    .arg(formatMs(benchclock::median(walls)))
                    .arg(shares.size()),
                QString(), Report::Verdict::NoBudget});
}

void benchIdle(Report &report, const BenchOptions &options) {
    BenchWindow window;
    auto *tabs = window.w<QTabWidget>("Onglet1");
    if (!window.shown() || !tabs || tabs->currentIndex() != 0) {
        report.fail(QStringLiteral("4"), QStringLiteral("Idle"),
                    QStringLiteral("the window did not come up on the general tab"));
        return;
    }
    TimerWatch watch(window.main());
    int wakeUps = 0;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &watch,
                     [&wakeUps] { ++wakeUps; });

    std::vector<double> cpuMs, wakes;
    QStringList active = activeTimers(window.main());
    for (int run = 0; run < options.idleRuns; ++run) {
        const int wakesBefore = wakeUps;
        const std::int64_t cpu = benchclock::cpuNs();
        runEventLoopFor(options.idleSeconds * 1000);
        cpuMs.push_back(double(benchclock::cpuNs() - cpu) / 1e6);
        wakes.push_back(wakeUps - wakesBefore);
        active += activeTimers(window.main());
    }
    active.removeDuplicates();

    QStringList receivers;
    const QMap<QString, int> byReceiver = watch.byReceiver();
    for (auto it = byReceiver.cbegin(); it != byReceiver.cend(); ++it)
        receivers.append(QStringLiteral("%1 x%2").arg(it.key()).arg(it.value()));
    const bool quiet = watch.count() == 0 && active.isEmpty();
    report.add({QStringLiteral("4"),
                QStringLiteral("Idle on the general tab: CPU over %1 s").arg(options.idleSeconds),
                formatMs(benchclock::median(cpuMs)),
                QStringLiteral("%1 timer events in the window, %2 active timers, %3 loop "
                               "wake-ups (the bench's own included)")
                    .arg(watch.count())
                    .arg(active.size())
                    .arg(benchclock::median(wakes)),
                QStringLiteral("no timer runs"),
                quiet ? Report::Verdict::Kept : Report::Verdict::Missed});
    if (!quiet)
        report.note(
            QStringLiteral("Idle: timers running: %1; timer events: %2.")
                .arg(active.join(QStringLiteral(", ")), receivers.join(QStringLiteral(", "))));

    // The same window made active, with the keyboard focus in a field: the caret
    // blinks, which is Qt's and not the program's.
    window.main().activateWindow();
    if (!waitUntil([&] { return window.main().isActiveWindow(); }, 2000)) {
        report.note(QStringLiteral("Idle, active window: the platform did not activate it."));
        return;
    }
    TimerWatch activeWatch(window.main());
    const std::int64_t cpu = benchclock::cpuNs();
    runEventLoopFor(options.idleSeconds * 1000);
    const double activeCpuMs = double(benchclock::cpuNs() - cpu) / 1e6;
    QStringList activeReceivers;
    const QMap<QString, int> activeBy = activeWatch.byReceiver();
    for (auto it = activeBy.cbegin(); it != activeBy.cend(); ++it)
        activeReceivers.append(QStringLiteral("%1 x%2").arg(it.key()).arg(it.value()));
    const QWidget *focus = QApplication::focusWidget();
    report.add({QStringLiteral("4b"),
                QStringLiteral("Idle, window active: CPU over %1 s").arg(options.idleSeconds),
                formatMs(activeCpuMs),
                QStringLiteral("focus in %1; timer events: %2")
                    .arg(focus ? QString::fromLatin1(focus->metaObject()->className()) + u' ' +
                                     focus->objectName()
                               : QStringLiteral("nothing"),
                         activeReceivers.isEmpty() ? QStringLiteral("none")
                                                   : activeReceivers.join(QStringLiteral(", "))),
                QString(), Report::Verdict::NoBudget});
}
