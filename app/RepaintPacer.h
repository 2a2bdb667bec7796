#pragma once

#include <QElapsedTimer>
#include <QObject>

class QWidget;

// Lets the window repaint at most once a frame. A network that answers thousands
// of times a second would otherwise have the window repaint after every answer,
// and painting, not the answers, would set the pace. A held repaint always comes
// at the end of its frame; while nothing changes no timer runs.
class RepaintPacer : public QObject {
    Q_OBJECT

public:
    explicit RepaintPacer(QWidget &window, int frameMs = 16);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget &window_;
    const int frameMs_;
    QElapsedTimer lastPaint_;
    bool held_ = false;
};
