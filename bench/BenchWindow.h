#pragma once

#include <QString>
#include <QTemporaryDir>
#include <functional>
#include <memory>

class Main;
class RadioNetControl;
class RecordingRadioNet;
class SimulatedRadioNet;

// Runs the event loop for ms milliseconds, blocking while there is nothing to do.
void runEventLoopFor(int ms);

// Runs the event loop until done() holds; false when ms passed first.
bool waitUntil(const std::function<bool()> &done, int ms);

// Writes a configuration file holding `satellites` satellites (Sat IDs 1, 2, ...)
// and a range of 32 terminals, and reads it back: true when it reads back whole.
// Its port is commPort, or the simulated network's default.
bool writeNetworkFile(const QString &fileName, int satellites, const QString &commPort = {});

// The program's main window on a simulated network, in a scratch program folder,
// shown and painted, as a technician has it in front of him.
class BenchWindow {
public:
    using CommandLine = std::function<QString(const QString &folder)>;

    // `prepare` runs on the network before the window starts up.
    explicit BenchWindow(const CommandLine &commandLine = {},
                         const std::function<void(SimulatedRadioNet &)> &prepare = {});
    // The window on any network, which it takes over.
    BenchWindow(RadioNetControl *network, const CommandLine &commandLine);
    ~BenchWindow();

    Main &main() { return *main_; }
    // The simulated network; only for a window made on one.
    SimulatedRadioNet &net() { return *net_; }
    RadioNetControl &network() { return *network_; }
    // The recorder the window talks to its network through.
    RecordingRadioNet *recorder();
    QString folder() const { return folder_.path(); }
    // False when the window did not come on the screen.
    bool shown() const { return shown_; }

    template <typename T> T *w(const char *name);

private:
    void show(const CommandLine &commandLine);

    QTemporaryDir folder_;
    RadioNetControl *network_;
    SimulatedRadioNet *net_ = nullptr;
    std::unique_ptr<Main> main_;
    bool shown_ = false;
};

#include "app/Main.h"

template <typename T> T *BenchWindow::w(const char *name) {
    return main_->findChild<T *>(QString::fromLatin1(name));
}
