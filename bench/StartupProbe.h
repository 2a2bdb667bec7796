#pragma once

class QWidget;

// The moment a start-up is over, taken alike in every program the bench starts:
// once the window has been painted and the event loop comes round to a zero timer
// (its first idle turn), prints "ready <CLOCK_MONOTONIC ns> <peak RSS KiB> <CPU ns>"
// on standard output and ends the event loop.
void reportWhenReady(QWidget &window);
