#pragma once

#include <QtGlobal>

struct Globale;
class RadioNetControl;
class LinkStatus;
class Pause;
class SatelliteFields;
class QLabel;
class QPushButton;
class QTabWidget;
class QTableWidget;
class QTimer;

// The tabs decide the link: the general tab takes the network off-line, the
// satellite tab reopens the port, the test tab starts the network; on the test tab
// Timer2 asks every satellite in turn for its configuration and status.
class TestMode {
public:
    struct Widgets {
        QTabWidget *Onglet1;
        QTableWidget *MFG2;
        QPushButton *b_Config;
        QTimer *Timer2;
        QLabel *StatusPanel1;
    };

    TestMode(Widgets w, Globale &g, RadioNetControl &RF1, SatelliteFields &fields, LinkStatus &link,
             Pause &pause);

    void Onglet1_Click(int PreviousTab);
    void b_Debut_test_Click();
    void b_Fin_Test_Click();
    void Timer2_Timer();

private:
    void fillTestGrid();

    Widgets w_;
    Globale &g_;
    RadioNetControl &RF1_;
    SatelliteFields &fields_;
    LinkStatus &link_;
    Pause &pause_;
    // Position of the satellite tested last; never reset, so a test goes on from
    // where it stopped.
    qint16 TestIndex = 0;
};
