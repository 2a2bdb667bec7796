#pragma once

#include <QObject>
#include <cstdint>
#include <vector>

class QTableWidget;
class QWidget;

// Posts a key press to a widget now and then and takes the time until the widget
// receives it: the window answering input while the answers pour in.
class InputProbe : public QObject {
public:
    explicit InputProbe(QWidget &target);

    // Does nothing while the last press has not arrived.
    void post();
    std::vector<double> latenciesMs;

protected:
    bool eventFilter(QObject *, QEvent *event) override;

private:
    QWidget &target_;
    bool outstanding_ = false;
    std::int64_t postedAt_ = 0;
};

// Counts the paints of one widget.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget &widget);
    int paints = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override;
};

// True once the test grid says OK on each of its first `satellites` rows.
bool allRowsAnswered(const QTableWidget &grid, int satellites);
