#pragma once

#include "ui_Main.h"

class QAction;
class QLabel;
class QTimer;

// The designed form, plus what a Designer file cannot hold: the two timers, the
// status bar's two panels and the menus' named separators.
struct MainForm : Ui::Main {
    QTimer *Timer1 = nullptr;       // the pause's tick, 50 ms
    QTimer *Timer2 = nullptr;       // the live test's step, 500 ms
    QLabel *StatusPanel1 = nullptr; // the link state
    QLabel *StatusPanel2 = nullptr; // the last message
    QLabel *NetworkLabel = nullptr; // which network the window talks to

    // Ours, last in the Options menu: opens the network log window.
    QAction *m_networkLog = nullptr;

    void setupUi(QMainWindow *Main);
};
