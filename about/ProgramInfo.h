#pragma once

#include <QString>

#if !defined(NORVALE_VERSION_MAJOR) || !defined(NORVALE_VERSION_MINOR) ||                          \
    !defined(NORVALE_VERSION_PATCH)
#error "The build defines the program's version (NORVALE_VERSION_MAJOR, _MINOR, _PATCH)"
#endif

// The program's title. Fixed here rather than taken from the application object,
// whose name defaults to the executable's file name when nobody sets it.
inline QString programTitle() {
    return QStringLiteral("Norvale Setup");
}

// major.minor.revision as plain decimal numbers: "1.0.2".
inline QString programVersion() {
    return QStringLiteral("%1.%2.%3")
        .arg(NORVALE_VERSION_MAJOR)
        .arg(NORVALE_VERSION_MINOR)
        .arg(NORVALE_VERSION_PATCH);
}
