#pragma once

#include "radionet/AirStation.h"

#include <QByteArray>
#include <QSocketNotifier>
#include <functional>
#include <memory>

// The far end of a serial line, in the test's own process: a pseudo-terminal whose
// device the program opens, with the network's station on the other side. What the
// station sends can be changed on its way (noise, a wrong speed), and the line can be
// cut as a pulled cable would.
class FarEnd {
public:
    explicit FarEnd(Air air);
    ~FarEnd();

    QString device() const { return device_; }
    // Applied to every frame the station sends; returns what goes on the line.
    std::function<QByteArray(const QByteArray &)> tamper;
    void write(const QByteArray &bytes);
    // Closes the far side: the program's end of the line sees it go.
    void cut();

private:
    int master_ = -1;
    int heldSlave_ = -1;
    QString device_;
    std::unique_ptr<QSocketNotifier> notifier_;
    AirStation station_;
};
