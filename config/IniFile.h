#pragma once

#include <QString>

// The largest file the configuration reader looks into; anything bigger is not a
// file of this program.
inline constexpr qint64 MaxIniFileSize = 1024 * 1024;

// Why the reader refused a file, for a caller that tells a technician what to fix.
// The kind says what was expected; lines are counted from 1 (0: none applies).
struct ConfigProblem {
    enum class Kind {
        None,
        FileMissing,
        NotAFile,
        Unreadable,     // found: the system's reason
        TooLarge,       // found: the size in bytes
        Binary,         // NUL bytes: not text (or text saved as UTF-16)
        SectionMissing, // no line reads [Section]
        SectionBlanks,  // line: the header written with blanks; found: that line
        KeyMissing,     // line: the section's header
        KeyBlanks,      // line: the key written with blanks; found: that line
        KeyInRepeat,    // line: the key in a later [Section], which is not read
        EmptyValue,     // line: the key's
        NumberTooLarge, // line: the key's; found: the value; low..high the range taken
        ControlFailed,  // found: what the control said
    };
    Kind kind = Kind::None;
    QString section, key;
    int line = 0;
    QString found;
    qint64 low = 0, high = 0;
    int sectionLine = 0; // KeyInRepeat: the first [Section], the one read
};

// Finds Key in Section of the file FileName and sets Value to its text. Only the
// first line that reads "[Section]" (ignoring case, no blanks allowed) opens the
// section, and the next line starting with "[" closes it. A key line's name is
// everything before its first "=", compared ignoring case with blanks significant;
// the value is everything after that "=", not trimmed. Lines may end in CR LF, LF
// or CR; text is read as UTF-8, bytes that are not valid UTF-8 as Latin-1.
// Returns false with an empty Value when the key is not found, an argument is
// empty, or the file is missing, unreadable or larger than MaxIniFileSize.
// Never throws. With why, a failure says why; a success leaves kind None with the
// key's line and its text in found, for a caller that refuses the value.
bool ReadIniKey(const QString &Section, const QString &Key, QString &Value, const QString &FileName,
                ConfigProblem *why = nullptr);

// True for a non-empty text of the characters "0" to "9" only.
bool IsDigitString(const QString &Text);

// The "Version" text of Setup.ini and of every configuration file.
inline QString versionText() {
    return QStringLiteral("TALMOR NORVALE CONFIGURATION FILE");
}
