#pragma once

#include <QString>
#include <memory>

class RadioNetControl;

// Which network a program talks to: the in-process simulator (the default) or the
// network at the far end of a serial line. The window takes it from the section
// [Network] of its "Setup.ini" (Link=Simulated|Serial, Scenario=FILE), the command
// line from its options.
struct NetworkChoice {
    enum class Link { Simulated, Serial };
    Link link = Link::Simulated;
    QString scenario; // for the simulator: a scenario file; none is the demo network
};

// The [Network] section of a settings file; a missing file, section or key, or a
// link of another name, keeps the default.
NetworkChoice readNetworkChoice(const QString &settingsPath);

// The network chosen. A scenario that cannot be read leaves the demo network on the
// air and says why in problem.
std::unique_ptr<RadioNetControl> makeNetwork(const NetworkChoice &choice, QString &problem);
