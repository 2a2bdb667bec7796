#pragma once

#include "satellites/SatelliteFields.h"

struct Globale;
class Texts;
class RadioNetControl;
class Pause;

// Detect, show configuration and configure, addressed to the current satellite.
// Each issues one request; the answers arrive later as the control's events.
class SatelliteCommands {
public:
    // The same fields as the current satellite's: the commands send what they show.
    using Widgets = SatelliteFields::Widgets;

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
