#include "app/RepaintPacer.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

RepaintPacer::RepaintPacer(QWidget &window, int frameMs)
    : QObject(&window)
    , window_(window)
    , frameMs_(frameMs) {
    window_.installEventFilter(this);
}

bool RepaintPacer::eventFilter(QObject *watched, QEvent *event) {
    if (watched != &window_ || event->type() != QEvent::UpdateRequest)
        return false;
    if (!lastPaint_.isValid() || lastPaint_.elapsed() >= frameMs_) {
        lastPaint_.restart();
        return false;
    }
    if (!held_) {
        held_ = true;
        const int wait = int(frameMs_ - lastPaint_.elapsed());
        QTimer::singleShot(qMax(0, wait), this, [this] {
            held_ = false;
            QCoreApplication::postEvent(&window_, new QEvent(QEvent::UpdateRequest),
                                        Qt::LowEventPriority);
        });
    }
    return true;
}
