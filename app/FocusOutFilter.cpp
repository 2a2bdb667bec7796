#include "app/FocusOutFilter.h"

#include <QFocusEvent>

void FocusOutFilter::watch(QObject *widget, std::function<void()> handler) {
    handlers_.insert(widget, std::move(handler));
    widget->installEventFilter(this);
}

bool FocusOutFilter::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        const auto it = handlers_.constFind(watched);
        if (it != handlers_.constEnd() && reason != Qt::PopupFocusReason &&
            reason != Qt::ActiveWindowFocusReason) {
            const std::function<void()> handler = *it; // the handler may rewire
            handler();
        }
    }
    return QObject::eventFilter(watched, event);
}
