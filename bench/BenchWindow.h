#pragma once

#include <QString>
#include <QTemporaryDir>
#include <functional>
#include <memory>

class Main;
class SimulatedRadioNet;

// Runs the event loop for ms milliseconds, blocking while there is nothing to do.
void runEventLoopFor(int ms);

// Runs the event loop until done() holds; false when ms passed first.
bool waitUntil(const std::function<bool()> &done, int ms);

// Writes a configuration file holding `satellites` satellites (Sat IDs 1, 2, ...)
// and a range of 32 terminals, and reads it back: true when it reads back whole.
bool writeNetworkFile(const QString &fileName, int satellites);

// The program's main window on a simulated network, in a scratch program folder,
// shown and painted, as a technician has it in front of him.
class BenchWindow {
public:
    // `prepare` runs on the network before the window starts up.
    explicit BenchWindow(const std::function<QString(const QString &folder)> &commandLine = {},
                         const std::function<void(SimulatedRadioNet &)> &prepare = {});
    ~BenchWindow();

    Main &main() { return *main_; }
    SimulatedRadioNet &net() { return *net_; }
    QString folder() const { return folder_.path(); }
    // False when the window did not come on the screen.
    bool shown() const { return shown_; }

    template <typename T> T *w(const char *name);

private:
    QTemporaryDir folder_;
    SimulatedRadioNet *net_;
    std::unique_ptr<Main> main_;
    bool shown_ = false;
};

#include "app/Main.h"

template <typename T> T *BenchWindow::w(const char *name) {
    return main_->findChild<T *>(QString::fromLatin1(name));
}
