#include "radionet/NetworkChoice.h"

#include "config/IniFile.h"
#include "radionet/Scenario.h"
#include "radionet/SerialRadioNet.h"
#include "radionet/SimulatedRadioNet.h"

#include <QDir>
#include <QFileInfo>

NetworkChoice readNetworkChoice(const QString &settingsPath) {
    NetworkChoice choice;
    QString value;
    if (ReadIniKey(QStringLiteral("Network"), QStringLiteral("Link"), value, settingsPath) &&
        value.trimmed().compare(QStringLiteral("Serial"), Qt::CaseInsensitive) == 0)
        choice.link = NetworkChoice::Link::Serial;
    if (ReadIniKey(QStringLiteral("Network"), QStringLiteral("Scenario"), value, settingsPath) &&
        !value.trimmed().isEmpty()) {
        // A relative name is read from the folder of the settings file.
        choice.scenario = QFileInfo(settingsPath).absoluteDir().absoluteFilePath(value.trimmed());
    }
    return choice;
}

std::unique_ptr<RadioNetControl> makeNetwork(const NetworkChoice &choice, QString &problem) {
    problem.clear();
    if (choice.link == NetworkChoice::Link::Serial)
        return std::make_unique<SerialRadioNet>();
    auto simulated = std::make_unique<SimulatedRadioNet>();
    if (!choice.scenario.isEmpty()) {
        if (const std::optional<Scenario> scenario = readScenario(choice.scenario, problem))
            simulated->loadScenario(*scenario, choice.scenario);
        else
            simulated->setScenarioProblem(problem);
    }
    return simulated;
}
