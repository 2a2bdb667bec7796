#include "radionet/DelayedCalls.h"

#include <algorithm>

DelayedCalls::DelayedCalls(QObject *parent)
    : QObject(parent) {
    clock_.start();
    pump_.setSingleShot(true);
    pump_.setTimerType(Qt::PreciseTimer);
    connect(&pump_, &QTimer::timeout, this, &DelayedCalls::deliverNext);
}

void DelayedCalls::post(int delayMs, std::function<void()> work) {
    const qint64 due = clock_.elapsed() + delayMs;
    // After every entry due at the same time or earlier: equal delays keep call order.
    const auto at = std::upper_bound(pending_.begin(), pending_.end(), due,
                                     [](qint64 d, const Pending &p) { return d < p.dueMs; });
    pending_.insert(at, Pending{due, std::move(work)});
    rearm();
}

void DelayedCalls::clear() {
    pending_.clear();
    pump_.stop();
}

void DelayedCalls::rearm() {
    if (pending_.empty()) {
        pump_.stop();
        return;
    }
    const qint64 wait = std::max<qint64>(0, pending_.front().dueMs - clock_.elapsed());
    pump_.start(static_cast<int>(wait));
}

void DelayedCalls::deliverNext() {
    if (pending_.empty())
        return;
    if (pending_.front().dueMs > clock_.elapsed()) {
        rearm();
        return;
    }
    const std::function<void()> work = std::move(pending_.front().work);
    pending_.pop_front();
    // Armed before the work runs: a handler that waits in a nested event loop still
    // receives what follows.
    rearm();
    work();
}
