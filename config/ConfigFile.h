#pragma once

#include "config/IniFile.h"

#include <QString>

class RadioNetControl;
struct Globale;

// The ".nvl" configuration file: section "General" (link and notification
// parameters), "Devices" (the terminal range) and "Satellite1" to "Satellite16"
// (SatId, Interface, Enabled; SatId 9999 marks an unused section).

// Saves the configuration held by RF1 and the copies kept in g (notification
// parameters, terminal range) to FileName. An existing FileName is first renamed to
// its backup: FileName cut before its first "." (of the whole path), plus ".bak".
// False, with nothing written, for an existing file whose name has no "." and for
// a read-only file or folder. False also for a list of 16 satellites or more, although the whole
// file is then written (no padding section was needed), and whenever a key could not be written.
// Never throws.
bool WriteConfigFile(const QString &FileName, RadioNetControl &RF1, const Globale &g);

// Loads FileName into NetControl: link parameters, notification parameters, the
// terminals of the range and the satellites. "Timer" is not read: the timer takes
// the time-out's value. Every key of the sixteen satellite sections must be there.
// On any failure both lists of NetControl are emptied (parameters already applied
// stay) and the result is false. Never throws. With why, a failure says why: the
// key or section at fault and its line, an empty value, a number out of range.
bool ReadConfigFile(const QString &FileName, RadioNetControl &NetControl,
                    ConfigProblem *why = nullptr);
