#pragma once

#include "commissioning/Report.h"
#include "commissioning/SatelliteProbe.h"
#include "commissioning/Wording.h"

// A report row's columns, filled alike by the survey and the live test.

// Position, Sat ID, and what the file expects.
void expectFromFile(CommissioningReport::Row &row, const FileSatellite &satellite);
// What the satellite said of itself.
void foundOnAir(CommissioningReport::Row &row, const SatelliteProbe::Config &config);
void foundOnAir(CommissioningReport::Row &row, const SatelliteProbe::Status &status);
// A line for the interface and for the enabled flag where the air is not the file.
void compareWithFile(CommissioningReport::Row &row, const Wording &words);
