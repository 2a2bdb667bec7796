#pragma once

#include "support/MainHarness.h"

#include <QString>
#include <initializer_list>

// Helpers for driving the satellite editor of a MainHarness window and reading the
// control's satellite list back.

struct SatSpec {
    qint16 satId;
    qint16 interfaceCode = 1;
    qint16 enabled = 1;
};

// Every satellite of the control's list as "satId,interface,enabled", blank-separated.
QString satelliteList(SimulatedRadioNet &net);
// The Sat IDs of the control's list, blank-separated.
QString satIds(SimulatedRadioNet &net);

// Replaces the control's list and shows its first satellite in the fields and in
// l_index, as a load would. Only right while position 1 is current (a fresh window).
void setSatellites(MainHarness &h, std::initializer_list<SatSpec> satellites);

// Moves from position 1 to `position` with Next; the fields must mirror the
// satellites (Sat IDs unique) so that the stores on the way change nothing.
void goToPosition(MainHarness &h, int position);

// Writes a marker into every value cell of the network view MFG1.
void fillNetworkView(MainHarness &h);
// True when the value column of MFG1 is empty and the six labels are still there.
bool networkViewCleared(MainHarness &h);
