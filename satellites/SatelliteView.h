#pragma once

#include <QtGlobal>

struct Globale;
class RadioNetControl;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

// How the current satellite is shown: its three fields, the position caption, the
// query buttons and the network view MFG1.
class SatelliteView {
public:
    struct Widgets {
        QLineEdit *Text3;
        QComboBox *C_Interface;
        QCheckBox *Check1;
        QLabel *l_index;
        QPushButton *b_GetConfig;
        QPushButton *b_Alive;
        QTableWidget *MFG1;
    };

    SatelliteView(Widgets w, const Globale &g, RadioNetControl &RF1);

    void ShowSatellite(qint16 satId);
    void ClearSatelliteView();
    void EnableSatelliteQueries();
    void DisableSatelliteQueries();
    // "index/count", no blanks.
    void ShowPosition();
    // Centre-top alignment of the network view's value column, set before writing it.
    void PrepareValueColumn();

private:
    Widgets w_;
    const Globale &g_;
    RadioNetControl &RF1_;
};
