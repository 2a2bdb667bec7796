#include "support/NetSupport.h"

#include <QEventLoop>
#include <QTabWidget>
#include <QTableWidget>

namespace net_support {

bool settle(SimulatedRadioNet &net, int timeoutMs) {
    // An event loop of its own rather than QTest::qWaitFor, which rests between
    // rounds: the simulator hands out one event per round.
    QEventLoop loop;
    bool arrived = false;
    QObject::connect(&net, &RadioNetControl::StatusReceived, &loop, [&](qint16 satId) {
        if (satId == -1) {
            arrived = true;
            loop.quit();
        }
    });
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    net.raiseStatusReceived(-1);
    loop.exec();
    return arrived;
}

void setAir(SimulatedRadioNet &net, std::initializer_list<OnAirSatellite> satellites) {
    net.clearAir();
    for (const OnAirSatellite &satellite : satellites)
        net.putOnAir(satellite);
}

void openSatelliteTab(MainHarness &h) {
    h.w<QTabWidget>("Onglet1")->setCurrentIndex(1);
    h.net().clearCallLog();
}

bool detect(MainHarness &h, qint16 satId) {
    h.typeAndLeave("Text3", QString::number(satId));
    h.w<QLabel>("StatusPanel2")->clear(); // so that "Ready" coming back marks the end
    h.click("b_Alive");
    const bool ended = QTest::qWaitFor([&] {
        return h.panel2() == QStringLiteral("Ready") || h.panel2() == QString::fromUtf8("Prêt");
    });
    h.net().clearCallLog();
    return ended;
}

QStringList networkView(MainHarness &h) {
    QStringList column;
    for (int row = 0; row < 6; ++row)
        column << h.w<QTableWidget>("MFG1")->item(row, 1)->text();
    return column;
}

QStringList testRow(MainHarness &h, int row) {
    auto *grid = h.w<QTableWidget>("MFG2");
    return {grid->item(row, 0)->text(), grid->item(row, 1)->text(), grid->item(row, 2)->text()};
}

TickHook::TickHook(QTimer *timer, std::function<void(int tick)> action) {
    QObject::connect(timer, &QTimer::timeout, &context_,
                     [ticks = ticks_, action = std::move(action)] { action(++*ticks); });
}

Watchdog::Watchdog(const char *what, int timeoutMs) {
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, [what] { qFatal("%s did not end", what); });
    timer_.start(timeoutMs);
}

} // namespace net_support
