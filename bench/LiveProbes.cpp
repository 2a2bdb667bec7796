#include "LiveProbes.h"

#include "Clock.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QTableWidget>

InputProbe::InputProbe(QWidget &target)
    : target_(target) {
    target.installEventFilter(this);
}

void InputProbe::post() {
    if (outstanding_)
        return;
    outstanding_ = true;
    postedAt_ = benchclock::monotonicNs();
    // Shift alone: the grid receives it and does nothing with it.
    QCoreApplication::postEvent(&target_,
                                new QKeyEvent(QEvent::KeyPress, Qt::Key_Shift, Qt::NoModifier));
}

bool InputProbe::eventFilter(QObject *, QEvent *event) {
    if (event->type() == QEvent::KeyPress && outstanding_) {
        latenciesMs.push_back(double(benchclock::monotonicNs() - postedAt_) / 1e6);
        outstanding_ = false;
    }
    return false;
}

PaintCounter::PaintCounter(QWidget &widget) {
    widget.installEventFilter(this);
}

bool PaintCounter::eventFilter(QObject *, QEvent *event) {
    if (event->type() == QEvent::Paint)
        ++paints;
    return false;
}

bool allRowsAnswered(const QTableWidget &grid, int satellites) {
    for (int row = 1; row <= satellites; ++row) {
        const QTableWidgetItem *item = grid.item(row, 1);
        if (!item || item->text() != QLatin1String("     OK"))
            return false;
    }
    return true;
}
