#include "BenchWindow.h"

#include "config/ConfigFile.h"
#include "config/Globale.h"
#include "radionet/RecordingRadioNet.h"
#include "radionet/SimulatedRadioNet.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QWindow>

void runEventLoopFor(int ms) {
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

bool waitUntil(const std::function<bool()> &done, int ms) {
    QElapsedTimer elapsed;
    elapsed.start();
    // Wakes the loop now and then, so that a wait with nothing happening still ends.
    QTimer wake;
    wake.start(10);
    while (!done()) {
        if (elapsed.elapsed() > ms)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

bool writeNetworkFile(const QString &fileName, int satellites, const QString &commPort) {
    SimulatedRadioNet net;
    if (!commPort.isEmpty())
        net.setCommPort(commPort);
    for (int id = 1; id <= satellites; ++id) {
        const SatellitePtr satellite = net.Satellites().Add(qint16(id));
        satellite->setInterface(qint16(id % 2));
        satellite->setEnabled(1);
    }
    Globale g;
    g.FirstDevice = 1;
    g.LastDevice = 32;
    // A full list of sixteen answers false although the file is complete: the
    // reading back decides.
    WriteConfigFile(fileName, net, g);
    SimulatedRadioNet check;
    return ReadConfigFile(fileName, check) && check.Satellites().Count() == satellites &&
           check.Devices().Count() == 32;
}

BenchWindow::BenchWindow(const CommandLine &commandLine,
                         const std::function<void(SimulatedRadioNet &)> &prepare)
    : net_(new SimulatedRadioNet) {
    network_ = net_;
    if (prepare)
        prepare(*net_);
    show(commandLine);
}

BenchWindow::BenchWindow(RadioNetControl *network, const CommandLine &commandLine)
    : network_(network) {
    show(commandLine);
}

RecordingRadioNet *BenchWindow::recorder() {
    return main_->findChild<RecordingRadioNet *>();
}

void BenchWindow::show(const CommandLine &commandLine) {
    const QString command = commandLine ? commandLine(folder_.path()) : QString();
    main_ = std::make_unique<Main>(network_, folder_.path(), command);
    main_->show();
    shown_ = waitUntil(
        [this] { return main_->windowHandle() && main_->windowHandle()->isExposed(); }, 5000);
    // Whatever the showing set going (layouts, the first paint) is done before any
    // figure is taken.
    runEventLoopFor(300);
}

BenchWindow::~BenchWindow() = default;
