#include "config/ConfigFile.h"

#include "config/Globale.h"
#include "config/IniFile.h"
#include "platform/Numeric.h"
#include "platform/ProfileString.h"
#include "platform/RuntimeError.h"
#include "radionet/RadioNetControl.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <cmath>
#include <cstdio>
#include <optional>

namespace {
const QString General = QStringLiteral("General");
const QString Devices = QStringLiteral("Devices");
constexpr int SatelliteSections = 16;
constexpr qint16 UnusedSatId = 9999;

QString satelliteSection(qint32 position) {
    return QStringLiteral("Satellite") + QString::number(position);
}

QString flagText(bool flag) {
    return flag ? QStringLiteral("1") : QStringLiteral("0");
}

// A number in its shortest decimal text, in plain notation for everything a serial
// speed can be ("1000000", not "1e+06").
QString numberText(double value) {
    if (!std::isfinite(value))
        throw RuntimeError::overflow();
    if (value == 0.0)
        return QStringLiteral("0"); // no "-0"
    const double magnitude = std::fabs(value);
    const char format = magnitude >= 1e-5 && magnitude < 1e15 ? 'f' : 'g';
    return QString::number(value, format, QLocale::FloatingPointShortest);
}

// Moves an existing configuration file aside to its backup, replacing an older
// backup. The rename replaces the old backup in one step, so at every moment the
// previous version exists under one of the two names.
bool moveToBackup(const QString &fileName, const QString &backupName) {
    if (!CanReplaceFile(fileName) || !CanReplaceFile(backupName))
        return false;
    // A file that is its own backup ("net.bak") would be renamed onto itself and
    // then rewritten, leaving no previous version.
    const QFileInfo backup(backupName);
    if (backup.exists() && backup.canonicalFilePath() == QFileInfo(fileName).canonicalFilePath())
        return false;
    return std::rename(QFile::encodeName(fileName).constData(),
                       QFile::encodeName(backupName).constData()) == 0;
}

// A key that must be present with a non-empty value.
std::optional<QString> requiredKey(const QString &section, const QString &key,
                                   const QString &fileName, ConfigProblem *why) {
    QString value;
    if (!ReadIniKey(section, key, value, fileName, why))
        return std::nullopt;
    if (value.isEmpty()) {
        if (why)
            why->kind = ConfigProblem::Kind::EmptyValue;
        return std::nullopt;
    }
    return value;
}

// A conversion of the value just read; an overflow is said with the range taken.
template <typename Convert>
auto inRange(Convert convert, qint64 low, qint64 high, ConfigProblem *why) {
    try {
        return convert();
    } catch (const RuntimeError &) {
        if (why) {
            why->kind = ConfigProblem::Kind::NumberTooLarge;
            why->low = low;
            why->high = high;
        }
        throw;
    }
}

// Cleared only when it holds something, as the control expects.
template <typename List> void emptyList(List &list) {
    if (list.Count() >= 1)
        list.Clear();
}

bool loadConfiguration(const QString &fileName, RadioNetControl &net, ConfigProblem *why) {
    if (!QFileInfo(fileName).isFile()) {
        if (why)
            why->kind = QFileInfo::exists(fileName) ? ConfigProblem::Kind::NotAFile
                                                    : ConfigProblem::Kind::FileMissing;
        return false;
    }
    std::optional<QString> text;
    auto read = [&](const QString &section, const QString &key) {
        text = requiredKey(section, key, fileName, why);
        return text.has_value();
    };
    auto int16Of = [&](const QString &t) {
        return inRange([&] { return textToInt16(t); }, -32768, 32767, why);
    };

    // Each value is applied before the next key is read: a later failure keeps it.
    if (!read(General, QStringLiteral("CommPort")))
        return false;
    net.setCommPort(*text);
    if (!read(General, QStringLiteral("BaudRate")))
        return false;
    net.setBaudRate(inRange([&] { return numberText(leadingNumber(*text)); }, 0, 0, why));
    if (!read(General, QStringLiteral("Enabled")))
        return false;
    net.setEnabled(*text == u"1");
    if (!read(General, QStringLiteral("Synchro")))
        return false;
    net.setSynchro(
        inRange([&] { return toInt32(leadingNumber(*text)); }, -2147483648LL, 2147483647LL, why));
    if (!read(General, QStringLiteral("TimeOut")))
        return false;
    net.setTimeOut(int16Of(*text));
    // The timer takes the time-out again; the file's "Timer" is never read.
    if (!read(General, QStringLiteral("TimeOut")))
        return false;
    net.setTimer(int16Of(*text));
    if (!read(General, QStringLiteral("mode")))
        return false;
    net.setMode(int16Of(*text));

    // The notification values go to the control only; the program's own copies
    // stay as they are and are what the next save writes.
    if (!read(General, QStringLiteral("SendToPc")))
        return false;
    bool sendToPc = *text == u"1";
    if (!read(General, QStringLiteral("TimeNotify")))
        return false;
    qint16 timeNotify = int16Of(*text);
    if (!read(General, QStringLiteral("TimeGoingOn")))
        return false;
    qint16 timeGoingOn = int16Of(*text);
    net.SetNotification(sendToPc, timeNotify, timeGoingOn);

    if (!read(Devices, QStringLiteral("FirstDevice")))
        return false;
    const qint16 firstDevice = int16Of(*text);
    if (!read(Devices, QStringLiteral("LastDevice")))
        return false;
    const qint16 lastDevice = int16Of(*text);
    TerminalList &devices = net.Devices();
    emptyList(devices);
    for (int n = firstDevice; n <= lastDevice; ++n)
        devices.Add(qint16(n));

    SatelliteList &satellites = net.Satellites();
    emptyList(satellites);
    for (int position = 1; position <= SatelliteSections; ++position) {
        const QString section = satelliteSection(position);
        if (!read(section, QStringLiteral("SatId")))
            return false;
        const qint16 satId = int16Of(*text);
        if (!read(section, QStringLiteral("Interface")))
            return false;
        const qint16 interfaceCode = int16Of(*text);
        if (!read(section, QStringLiteral("Enabled")))
            return false;
        const qint16 enabled = int16Of(*text);
        if (satId == UnusedSatId)
            continue;
        satellites.Add(satId);
        // By identifier, as the list is keyed: with a repeated SatId the first
        // satellite of that identifier takes the values.
        const SatellitePtr satellite = satellites.ItemById(satId);
        satellite->setEnabled(enabled);
        satellite->setInterface(interfaceCode);
    }
    return true;
}
} // namespace

bool WriteConfigFile(const QString &FileName, RadioNetControl &RF1, const Globale &g) {
    try {
        // The backup name is cut at the first "." of the whole path, a dot in a
        // folder name included. An existing file whose name has no dot gets no
        // backup, and so is left untouched: the save fails.
        if (QFileInfo(FileName).isFile()) {
            const qsizetype dot = FileName.indexOf(u'.');
            if (dot < 0 || !moveToBackup(FileName, FileName.left(dot) + QStringLiteral(".bak")))
                return false;
        }

        // A key that cannot be written ends the save; what was written stays.
        struct KeyNotWritten {};
        auto put = [&](const QString &section, const QString &key, const QString &value) {
            if (!WritePrivateProfileString(section, key, value, FileName))
                throw KeyNotWritten();
        };

        put(General, QStringLiteral("Version"), versionText());
        put(General, QStringLiteral("CommPort"), RF1.CommPort());
        put(General, QStringLiteral("BaudRate"), RF1.BaudRate());
        put(General, QStringLiteral("Enabled"), flagText(RF1.Enabled()));
        put(General, QStringLiteral("Synchro"), QString::number(RF1.Synchro()));
        put(General, QStringLiteral("TimeOut"), QString::number(RF1.TimeOut()));
        put(General, QStringLiteral("Timer"), QString::number(RF1.Timer()));
        put(General, QStringLiteral("mode"), QString::number(RF1.Mode()));
        put(General, QStringLiteral("SendToPc"), flagText(g.SendToPc));
        put(General, QStringLiteral("TimeNotify"), QString::number(g.TimeNotify));
        put(General, QStringLiteral("TimeGoingOn"), QString::number(g.TimeGoingOn));
        put(Devices, QStringLiteral("FirstDevice"), QString::number(g.FirstDevice));
        put(Devices, QStringLiteral("LastDevice"), QString::number(g.LastDevice));

        SatelliteList &satellites = RF1.Satellites();
        const qint32 count = satellites.Count();
        // No upper bound: a longer list writes more than sixteen sections.
        for (qint32 position = 1; position <= count; ++position) {
            const SatellitePtr satellite = satellites.Item(toInt16(position));
            const QString section = satelliteSection(position);
            put(section, QStringLiteral("SatId"), QString::number(satellite->SatId()));
            put(section, QStringLiteral("Interface"), QString::number(satellite->Interface()));
            put(section, QStringLiteral("Enabled"), QString::number(satellite->Enabled()));
        }
        bool padded = false;
        for (qint32 position = count + 1; position <= SatelliteSections; ++position) {
            const QString section = satelliteSection(position);
            put(section, QStringLiteral("SatId"), QString::number(UnusedSatId));
            put(section, QStringLiteral("Interface"), QStringLiteral("0"));
            put(section, QStringLiteral("Enabled"), QStringLiteral("0"));
            padded = true;
        }
        // A full list needs no padding section and answers false although the
        // file is complete; callers report a failed save then.
        return padded;
    } catch (...) {
        return false;
    }
}

bool ReadConfigFile(const QString &FileName, RadioNetControl &NetControl, ConfigProblem *why) {
    if (why)
        *why = ConfigProblem();
    try {
        if (loadConfiguration(FileName, NetControl, why))
            return true;
    } catch (const std::exception &error) {
        // Anything but a number out of range is the control's own failure.
        if (why && why->kind == ConfigProblem::Kind::None) {
            why->kind = ConfigProblem::Kind::ControlFailed;
            why->found = QString::fromLocal8Bit(error.what());
        }
    } catch (...) {
        if (why && why->kind == ConfigProblem::Kind::None)
            why->kind = ConfigProblem::Kind::ControlFailed;
    }
    // Satellites first, then terminals; a failing call on one list does not keep
    // the other from being emptied.
    try {
        emptyList(NetControl.Satellites());
    } catch (...) {
    }
    try {
        emptyList(NetControl.Devices());
    } catch (...) {
    }
    return false;
}
