#pragma once

#include "support/MainHarness.h"

#include <QStringList>
#include <QTimer>
#include <functional>
#include <initializer_list>
#include <memory>

// Helpers for the tests of the network link, the live test and the satellite commands.
namespace net_support {

// Waits until everything the simulator has queued so far has been delivered: a
// status answer from Sat ID -1, which no handler takes, is queued behind it and
// waited for. False on time-out.
bool settle(SimulatedRadioNet &net, int timeoutMs = 10000);

// Only these satellites on the air, each with the figures given.
void setAir(SimulatedRadioNet &net, std::initializer_list<OnAirSatellite> satellites);

// The satellite tab selected (port reopened) and the call log emptied.
void openSatelliteTab(MainHarness &h);

// The Sat ID typed into Text3 and left, and a detection chain run until panel 2
// says "Ready" again (in either language); the call log emptied. False when it did not.
bool detect(MainHarness &h, qint16 satId);

// Column 1 of the network view MFG1, rows 0 to 5; columns 0 to 2 of a row of the
// test view MFG2.
QStringList networkView(MainHarness &h);
QStringList testRow(MainHarness &h, int row);

// Runs an action after the window's own handler of each tick of a timer, given the
// number of the tick (1 for the first). Disconnected when destroyed.
class TickHook {
public:
    TickHook(QTimer *timer, std::function<void(int tick)> action);
    int ticks() const { return *ticks_; }

private:
    std::shared_ptr<int> ticks_ = std::make_shared<int>(0);
    QObject context_;
};

// Ends the process with a message if still alive after a long time: a wait that
// never ends shows as a failure, not as a test that hangs.
class Watchdog {
public:
    explicit Watchdog(const char *what, int timeoutMs = 60000);

private:
    QTimer timer_;
};

} // namespace net_support
