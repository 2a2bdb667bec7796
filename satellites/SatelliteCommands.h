#pragma once

struct Globale;
class Texts;
class RadioNetControl;
class Pause;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;

// Detect, show configuration and configure, addressed to the current satellite.
// Each issues one request; the answers arrive later as the control's events.
class SatelliteCommands {
public:
    struct Widgets {
        QLineEdit *Text3;
        QComboBox *C_Interface;
        QCheckBox *Check1;
        QLabel *StatusPanel2;
    };

    SatelliteCommands(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1,
                      Pause &pause);

    void b_Alive_Click();
    void b_GetConfig_Click();
    void b_Config_Click();

private:
    Widgets w_;
    Globale &g_;
    const Texts &texts_;
    RadioNetControl &RF1_;
    Pause &pause_;
};
