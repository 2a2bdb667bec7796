#include "app/OwnCaptions.h"

#include "config/Globale.h"
#include "radionet/SerialRadioNet.h"
#include "radionet/SimulatedRadioNet.h"
#include "radionet/gui/NetworkLogWindow.h"

#include <QAction>
#include <QLabel>

OwnCaptions::OwnCaptions(Widgets w, const Globale &g, RadioNetControl &RF1, NetworkLogMenu &logMenu)
    : w_(w)
    , g_(g)
    , RF1_(RF1)
    , logMenu_(logMenu) {}

OwnTexts::Language OwnCaptions::language() const {
    // The captions' language: a base of 0 shows the French texts.
    return g_.LanguageBase == 0 ? OwnTexts::French : OwnTexts::English;
}

void OwnCaptions::apply() {
    const OwnTexts::Language lang = language();
    w_.m_networkLog->setText(texts_(lang, "LogMenu"));
    logMenu_.setLanguage(lang);
    if (auto *network = qobject_cast<NetworkBase *>(&RF1_))
        network->setTextLanguage(lang);
    if (qobject_cast<SerialRadioNet *>(&RF1_)) {
        const QString device = SerialRadioNet::deviceFor(RF1_.CommPort());
        w_.NetworkLabel->setText(texts_(lang, "NetworkSerial", device));
        w_.NetworkLabel->setToolTip(QString());
        return;
    }
    w_.NetworkLabel->setText(texts_(lang, "NetworkSimulated"));
    const auto *simulated = qobject_cast<SimulatedRadioNet *>(&RF1_);
    if (simulated && !simulated->scenarioProblem().isEmpty())
        w_.NetworkLabel->setToolTip(texts_(lang, "ScenarioUnread", simulated->scenarioProblem()));
    else
        w_.NetworkLabel->setToolTip(simulated ? simulated->scenarioSource() : QString());
}
