#pragma once

struct Globale;
class QTimer;

// The pause that follows every step asked of the network: five ticks of Timer1
// (about 250 ms) during which the window stays live and the network's events come
// in. It waits in the event loop instead of spinning.
class Pause {
public:
    Pause(Globale &g, QTimer &timer1);

    void run();
    // Timer1's tick: counts one, raising the overflow error past 16 bits.
    void Timer1_Timer();

private:
    Globale &g_;
    QTimer &timer1_;
    // Pauses under way: a pause started by a handler that runs inside another one
    // is nested in it.
    int running_ = 0;
};
