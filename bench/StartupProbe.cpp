#include "StartupProbe.h"

#include "Clock.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <sys/resource.h>

namespace {

// Notes the first paint of any widget of the window; the zero timer then waits for
// it, so that "ready" always means a window on the screen, in both programs alike.
class ReadyProbe : public QObject {
public:
    explicit ReadyProbe(QWidget &window)
        : QObject(&window) {
        QCoreApplication::instance()->installEventFilter(this);
        QTimer::singleShot(0, this, &ReadyProbe::check);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Paint && watched->isWidgetType())
            painted_ = true;
        return false;
    }

private:
    void check() {
        if (!painted_) {
            QTimer::singleShot(0, this, &ReadyProbe::check);
            return;
        }
        const std::int64_t now = benchclock::monotonicNs();
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        std::printf("ready %lld %ld %lld\n", static_cast<long long>(now), usage.ru_maxrss,
                    static_cast<long long>(benchclock::cpuNs()));
        std::fflush(stdout);
        QCoreApplication::exit(0);
    }

    bool painted_ = false;
};

} // namespace

void reportWhenReady(QWidget &window) {
    new ReadyProbe(window);
}
