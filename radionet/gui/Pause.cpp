#include "radionet/gui/Pause.h"

#include "config/Globale.h"
#include "platform/Numeric.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QTimer>

Pause::Pause(Globale &g, QTimer &timer1)
    : g_(g)
    , timer1_(timer1) {}

void Pause::run() {
    g_.WaitTicks = 0;
    timer1_.start();
    ++running_;
    // Tested after every event, not only in the tick: a click during the pause may
    // run a nested pause, which resets and raises the shared WaitTicks and stops
    // Timer1; this pause then ends too, without a tick of its own.
    while (g_.WaitTicks < 5)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    timer1_.stop();
    --running_;
    // The pause this one was nested in may be asleep in the event loop, and with
    // Timer1 stopped nothing else need come to wake it up and let it see the count.
    if (running_ > 0) {
        if (QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance())
            dispatcher->wakeUp();
    }
}

void Pause::Timer1_Timer() {
    g_.WaitTicks = add16(g_.WaitTicks, 1);
}
