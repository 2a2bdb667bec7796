#pragma once

#include "support/MainHarness.h"

#include <QStringList>
#include <QTimer>
#include <functional>
#include <initializer_list>
#include <memory>

class QTableWidget;

// Helpers for the tests of the network link, the live test and the satellite
// commands.
namespace net_support {

// An identifier no satellite of any test carries: an answer from it is ignored by
// every handler in every request mode.
constexpr qint16 NobodyId = -1;

// Waits until everything the simulator has queued so far has been delivered: an
// answer from NobodyId is queued behind it and waited for. False on time-out.
bool settle(SimulatedRadioNet &net, int timeoutMs = 10000);

// Only these satellites on the air, each with the figures given.
void setAir(SimulatedRadioNet &net, std::initializer_list<OnAirSatellite> satellites);

// The satellite tab selected (port reopened) and the call log emptied.
void openSatelliteTab(MainHarness &h);

// The satellite's Sat ID typed into Text3 and left, and a detection chain run to
// its end ("Ready" in panel 2, in either language); the call log is emptied afterwards. False when
// the chain did not end.
bool detect(MainHarness &h, qint16 satId);

// Column 1 of the network view MFG1, rows 0 to 5.
QStringList networkView(MainHarness &h);
// Columns 0 to 2 of a row of the test view MFG2.
QStringList testRow(MainHarness &h, int row);

// The call-log entries that begin with a prefix ("RequestConfig ").
QStringList entries(const QStringList &log, const QString &prefix);

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

// Ends the test process with a message if it is still alive after a long time:
// a pause that never ends shows as a failure, not as a test that hangs.
class Watchdog {
public:
    explicit Watchdog(const char *what, int timeoutMs = 60000);

private:
    QTimer timer_;
};

} // namespace net_support
