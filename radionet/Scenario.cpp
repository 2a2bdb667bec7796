#include "radionet/Scenario.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>
#include <algorithm>
#include <map>

namespace {

// A value that cannot be taken, said so that the line can be found and fixed.
struct Refused {
    QString text;
};

class Reader {
public:
    Reader(QSettings &ini, QString group)
        : ini_(ini)
        , group_(std::move(group)) {}

    QString text(const char *key, const QString &fallback) const {
        const QVariant value = ini_.value(group_ + u'/' + QLatin1String(key));
        if (!value.isValid())
            return fallback;
        // An INI value with commas reads as a list; a name may hold commas.
        return value.typeId() == QMetaType::QStringList ? value.toStringList().join(u',')
                                                        : value.toString().trimmed();
    }

    qint64 number(const char *key, qint64 fallback, qint64 low, qint64 high) const {
        const QString found = text(key, QString::number(fallback));
        bool ok = false;
        const qint64 value = found.toLongLong(&ok);
        if (!ok || value < low || value > high)
            refuse(key, QStringLiteral("a whole number from %1 to %2").arg(low).arg(high), found);
        return value;
    }

    [[noreturn]] void refuse(const char *key, const QString &expected, const QString &found) const {
        throw Refused{QStringLiteral("[%1] %2: expected %3, found \"%4\"")
                          .arg(group_, QLatin1String(key), expected, found)};
    }

    bool has(const char *key) const { return ini_.contains(group_ + u'/' + QLatin1String(key)); }

private:
    QSettings &ini_;
    QString group_;
};

OnAirSatellite satelliteOf(const Reader &r) {
    if (!r.has("SatId"))
        r.refuse("SatId", QStringLiteral("the satellite's Sat ID"), QString());
    OnAirSatellite s{.satId = qint16(r.number("SatId", 0, 0, 32767))};
    if (s.satId == Air::AnySatellite)
        r.refuse("SatId", QStringLiteral("a Sat ID other than 2047, which addresses any satellite"),
                 QStringLiteral("2047"));
    s.identity = r.text("Identity", QStringLiteral("QX NORVALE %1").arg(s.satId));
    const QString firmware = r.text("Firmware", QStringLiteral("2.5"));
    const QRegularExpression version(QStringLiteral("^(\\d{1,4})\\.(\\d{1,4})$"));
    const auto match = version.match(firmware);
    if (!match.hasMatch())
        r.refuse("Firmware", QStringLiteral("major.minor, such as 2.5"), firmware);
    s.rfVersionMajor = qint16(match.captured(1).toInt());
    s.rfVersionMinor = qint16(match.captured(2).toInt());
    const QString interface = r.text("Interface", QStringLiteral("RS-232"));
    if (interface != QStringLiteral("RS-232") && interface != QStringLiteral("RS-485"))
        r.refuse("Interface", QStringLiteral("RS-232 or RS-485"), interface);
    s.interfaceCode = interface == QStringLiteral("RS-232") ? 1 : 0;
    s.enabled = qint32(r.number("Enabled", 1, 0, 1));
    s.rxFree = qint16(r.number("RxFree", 28, 0, 32767));
    s.txFree = qint16(r.number("TxFree", 30, 0, 32767));
    s.answers = r.number("Silent", 0, 0, 1) == 0;
    s.interfaceFixed = r.number("InterfaceFixed", 0, 0, 1) == 1;
    return s;
}

} // namespace

Air Scenario::air() const {
    Air air;
    for (const OnAirSatellite &s : satellites)
        air.put(s, drift);
    air.setLossRate(lossRate, seed);
    return air;
}

std::optional<Scenario> readScenario(const QString &path, QString &error) {
    if (!QFileInfo(path).isFile()) {
        error = QStringLiteral("%1: no such file").arg(path);
        return std::nullopt;
    }
    QSettings ini(path, QSettings::IniFormat);
    if (ini.status() != QSettings::NoError) {
        error = QStringLiteral("%1: not a readable scenario file").arg(path);
        return std::nullopt;
    }
    try {
        Scenario scenario;
        const Reader air(ini, QStringLiteral("Air"));
        scenario.answerDelayMs = int(air.number("AnswerDelayMs", 30, 0, 60000));
        scenario.drift = air.number("Drift", 0, 0, 1) == 1;
        scenario.seed = quint32(air.number("Seed", 1, 0, 0xFFFFFFFF));
        const QString loss = air.text("LossRate", QStringLiteral("0"));
        bool ok = false;
        scenario.lossRate = loss.toDouble(&ok);
        if (!ok || scenario.lossRate < 0 || scenario.lossRate > 1)
            air.refuse("LossRate", QStringLiteral("a share from 0 to 1, such as 0.05"), loss);

        // Satellite1, Satellite2, ... in the order of their numbers, not of their names.
        std::map<int, QString> sections;
        const QRegularExpression name(QStringLiteral("^Satellite(\\d+)$"));
        for (const QString &group : ini.childGroups()) {
            const auto match = name.match(group);
            if (match.hasMatch())
                sections.emplace(match.captured(1).toInt(), group);
            else if (group != QStringLiteral("Air"))
                throw Refused{QStringLiteral("[%1]: expected [Air] or [Satellite1], "
                                             "[Satellite2], ...")
                                  .arg(group)};
        }
        for (const auto &[number, group] : sections) {
            const Reader reader(ini, group);
            const OnAirSatellite s = satelliteOf(reader);
            if (std::any_of(scenario.satellites.begin(), scenario.satellites.end(),
                            [&](const OnAirSatellite &o) { return o.satId == s.satId; }))
                reader.refuse("SatId", QStringLiteral("a Sat ID no other satellite has"),
                              QString::number(s.satId));
            scenario.satellites.push_back(s);
        }
        return scenario;
    } catch (const Refused &refused) {
        error = QStringLiteral("%1: %2").arg(path, refused.text);
        return std::nullopt;
    }
}
