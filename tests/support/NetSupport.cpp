#include "support/NetSupport.h"

#include <QEventLoop>
#include <QLineEdit>
#include <QTabWidget>
#include <QTableWidget>

namespace net_support {

bool settle(SimulatedRadioNet &net, int timeoutMs) {
    // An event loop of its own rather than QTest::qWaitFor, which rests between
    // rounds: the simulator hands out one event per round.
    QEventLoop loop;
    bool arrived = false;
    QObject::connect(&net, &RadioNetControl::StatusReceived, &loop, [&](qint16 satId) {
        if (satId == NobodyId) {
            arrived = true;
            loop.quit();
        }
    });
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
    net.raiseStatusReceived(NobodyId);
    limit.start(timeoutMs);
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
    // Panel 2 emptied first, so that "Ready" coming back marks the chain's end.
    h.w<QLabel>("StatusPanel2")->clear();
    h.click("b_Alive");
    const bool ended = QTest::qWaitFor([&] {
        return h.panel2() == QStringLiteral("Ready") || h.panel2() == QString::fromUtf8("Prêt");
    });
    h.net().clearCallLog();
    return ended;
}

QStringList networkView(MainHarness &h) {
    auto *grid = h.w<QTableWidget>("MFG1");
    QStringList column;
    for (int row = 0; row < 6; ++row)
        column << grid->item(row, 1)->text();
    return column;
}

QStringList testRow(MainHarness &h, int row) {
    auto *grid = h.w<QTableWidget>("MFG2");
    return {grid->item(row, 0)->text(), grid->item(row, 1)->text(), grid->item(row, 2)->text()};
}

QStringList entries(const QStringList &log, const QString &prefix) {
    QStringList found;
    for (const QString &entry : log) {
        if (entry.startsWith(prefix))
            found << entry;
    }
    return found;
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
