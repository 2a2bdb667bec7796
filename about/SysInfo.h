#pragma once

#include "platform/RegistryFile.h"

#include <QString>
#include <functional>

class QWidget;

// Starts a program by its path without waiting for it; false when it cannot be
// started. Injected so that tests see what would be started.
using ProgramStarter = std::function<bool(const QString &program)>;

// The program's own starter: QProcess::startDetached, no arguments.
bool startDetachedProgram(const QString &program);

// Reads one registry value as text into KeyVal: a string as it is, a double word
// as its decimal number (built as described in GetKeyValue's body), any other type
// leaving KeyVal as it was. False, with KeyVal emptied, when the key or the value
// is missing. A double word whose digits, appended to what KeyVal held, do not
// read as a hexadecimal number raises RuntimeError.
bool GetKeyValue(const RegistryFile &registry, RegistryFile::Root KeyRoot, const QString &KeyName,
                 const QString &SubKeyRef, QString &KeyVal);

// Finds the system-information tool through the registry file of programFolder
// and starts it; when there is none, or anything fails on the way, shows the one
// modal message that says so.
void StartSysInfo(const QString &programFolder, const ProgramStarter &starter, QWidget *parent);

// The text of that message, the same in both languages.
QString sysInfoUnavailableText();
