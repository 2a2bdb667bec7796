#include "app/Settings.h"

#include "config/Globale.h"
#include "config/IniFile.h"
#include "platform/ProfileString.h"

#include <QFileInfo>

namespace {
const QString section = QStringLiteral("General");
} // namespace

Settings::Settings(Globale &g)
    : g_(g) {}

void Settings::buildSettingsPath() {
    QString folder = g_.ProgramFolder;
    if (!folder.endsWith(u'/'))
        folder += u'/';
    g_.SettingsPath = folder + QStringLiteral("Setup.ini");
}

bool Settings::ReadSettings() {
    buildSettingsPath();
    if (!QFileInfo(g_.SettingsPath).isFile())
        return false;
    QString value;
    if (!ReadIniKey(section, QStringLiteral("Version"), value, g_.SettingsPath) ||
        value != versionText())
        return false;

    bool result = true;
    // Every key is read whatever became of the ones before; an empty value keeps
    // the variable as it was but makes the read a failure.
    auto readInto = [&](const QString &key, QString &variable) {
        QString text;
        if (!ReadIniKey(section, key, text, g_.SettingsPath) || text.isEmpty()) {
            result = false;
            return;
        }
        variable = text;
    };
    readInto(QStringLiteral("Language"), g_.CurrentLanguage);
    readInto(QStringLiteral("File1"), g_.RecentFile1);
    readInto(QStringLiteral("File2"), g_.RecentFile2);
    readInto(QStringLiteral("File3"), g_.RecentFile3);
    readInto(QStringLiteral("File4"), g_.RecentFile4);
    return result;
}

bool Settings::WriteSettings() {
    buildSettingsPath();
    const QString &path = g_.SettingsPath;
    // Only the last write decides the result.
    WritePrivateProfileString(section, QStringLiteral("Version"), versionText(), path);
    WritePrivateProfileString(section, QStringLiteral("Language"), g_.CurrentLanguage, path);
    WritePrivateProfileString(section, QStringLiteral("File1"), g_.RecentFile1, path);
    WritePrivateProfileString(section, QStringLiteral("File2"), g_.RecentFile2, path);
    WritePrivateProfileString(section, QStringLiteral("File3"), g_.RecentFile3, path);
    return WritePrivateProfileString(section, QStringLiteral("File4"), g_.RecentFile4, path);
}
