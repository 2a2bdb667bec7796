#pragma once

#include <QString>

// The profile-string writer of initialisation files ("Setup.ini", the ".nvl"
// configuration files), with the behaviour of the system call the program was
// designed around, so that files pass unchanged between this program and others:
// - the file is created when missing, and a missing section is appended at its end;
// - an existing key gets its new value in place; a new key goes after the last key
//   line of its section;
// - sections and keys are found as the configuration reader finds them: the first
//   header line equal to "[section]" ignoring case, then the first line of that
//   section whose text before its first "=" equals the key ignoring case;
// - every other line keeps its content; every line, the last included, ends in CR LF;
// - new text is written as UTF-8; an empty value is written as "Key=".
// The file is rewritten through a temporary file in its folder that replaces it
// at the end, so a failure never leaves a half-written file; a write that leaves
// the content as it is does not touch the file. Returns false on any
// failure: missing folder, read-only file or folder, unreadable file, or a section,
// key or value that cannot be written as one line.
bool WritePrivateProfileString(const QString &section, const QString &key, const QString &value,
                               const QString &fileName);

// True when fileName can be written by replacing it: its folder exists and is
// writable, and the file, if it exists, is a writable file. A file or folder without
// its owner's write permission counts as read-only for every user, the super-user
// included, as the read-only attribute of other systems does.
bool CanReplaceFile(const QString &fileName);
