#include "radionet/Pause.h"

#include "config/Globale.h"
#include "platform/Numeric.h"

#include <QCoreApplication>
#include <QTimer>

Pause::Pause(Globale &g, QTimer &timer1)
    : g_(g)
    , timer1_(timer1) {}

void Pause::run() {
    g_.WaitTicks = 0;
    timer1_.start();
    // Tested after every event, not only in the tick: a click during the pause may
    // run a nested pause, which raises the shared WaitTicks and stops Timer1; this
    // pause must then end too.
    while (g_.WaitTicks < 5) {
        if (!timer1_.isActive() && g_.WaitTicks < 5)
            timer1_.start(); // a nested pause stopped the shared timer early
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    timer1_.stop();
}

void Pause::Timer1_Timer() {
    g_.WaitTicks = add16(g_.WaitTicks, 1);
}
