#pragma once

#include <QString>

// The largest file the configuration reader looks into; anything bigger is not a
// file of this program.
inline constexpr qint64 MaxIniFileSize = 1024 * 1024;

// Finds Key in Section of the file FileName and sets Value to its text. Only the
// first line that reads "[Section]" (ignoring case, no blanks allowed) opens the
// section, and the next line starting with "[" closes it. A key line's name is
// everything before its first "=", compared ignoring case with blanks significant;
// the value is everything after that "=", not trimmed. Lines may end in CR LF, LF
// or CR; text is read as UTF-8, bytes that are not valid UTF-8 as Latin-1.
// Returns false with an empty Value when the key is not found, an argument is
// empty, or the file is missing, unreadable or larger than MaxIniFileSize.
// Never throws.
bool ReadIniKey(const QString &Section, const QString &Key, QString &Value,
                const QString &FileName);

// True for a non-empty text of the characters "0" to "9" only.
bool IsDigitString(const QString &Text);

// The "Version" text of Setup.ini and of every configuration file.
inline QString versionText() {
    return QStringLiteral("TALMOR NORVALE CONFIGURATION FILE");
}
