#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <deque>
#include <functional>

// Work that a network does later, through the event loop: an answer after its delay,
// an error raised by a call. Ordered by due time and, for equal times, by the order
// posted. One piece is done per timer shot, so a handler that runs a nested event
// loop still sees the rest arrive in order.
class DelayedCalls : public QObject {
public:
    explicit DelayedCalls(QObject *parent = nullptr);

    void post(int delayMs, std::function<void()> work);
    void clear();

private:
    struct Pending {
        qint64 dueMs;
        std::function<void()> work;
    };
    void rearm();
    void deliverNext();

    std::deque<Pending> pending_;
    QElapsedTimer clock_;
    QTimer pump_;
};
