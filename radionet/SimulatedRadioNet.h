#pragma once

#include "radionet/Air.h"
#include "radionet/DelayedCalls.h"
#include "radionet/NetworkBase.h"

#include <QStringList>
#include <optional>
#include <set>

// The program's own radio network: a small model of a serial link and of the
// satellites on the air. Every answer or error reaches the event loop first and is
// emitted from there, never from inside the call that caused it; answers to the
// four satellite requests arrive after the answer delay, in the order of the calls.
struct Scenario;

class SimulatedRadioNet : public NetworkBase {
    Q_OBJECT

public:
    // NetError numbers of the link itself.
    static constexpr qint16 PortNotOpenError = 1;
    static constexpr qint16 PortNotAvailableError = 2;
    // A Detect sent to this Sat ID is answered by whichever satellite hears it first.
    static constexpr qint16 BroadcastSatId = 2047;
    static constexpr int DefaultAnswerDelayMs = 30;

    explicit SimulatedRadioNet(QObject *parent = nullptr);

    bool StartPolling() override;
    bool StopPolling() override;
    bool OpenPort() override;
    bool ClosePort() override;
    qint16 LinkState() const override;

    // The scenario: what is on the air and how the link behaves.
    void putOnAir(const OnAirSatellite &satellite); // adds, or replaces the one with its id
    void removeFromAir(qint16 satId);
    void clearAir();
    std::optional<OnAirSatellite> onAir(qint16 satId) const;
    void setAvailablePorts(const QStringList &ports); // default: COM1..COM4
    void setAnswerDelayMs(int delayMs);
    void injectNetError(qint16 errNum, const QString &description); // the next request fails
    void setLinkStateOverride(std::optional<qint16> state);         // LinkState reports this value
    // Queue an event exactly as the component would.
    void raiseNetError(qint16 errNum, const QString &description);
    void raiseSatelliteAnswered(qint16 satId, const QString &identity);
    void raiseConfigReceived(qint16 satId);
    void raiseStatusReceived(qint16 satId);
    // What a scenario file describes: the air, the answer delay, the loss rate.
    void loadScenario(const Scenario &scenario, const QString &source = QString());
    // Where the air comes from: a scenario file, or why it could not be read.
    QString scenarioSource() const { return scenarioSource_; }
    QString scenarioProblem() const { return scenarioProblem_; }
    void setScenarioProblem(const QString &problem) { scenarioProblem_ = problem; }

private:
    void request(Request kind, const std::shared_ptr<NetSatellite> &satellite) override;
    void answer(Request kind, qint16 address, const std::shared_ptr<NetSatellite> &satellite,
                qint16 newSatId, qint16 interfaceCode, qint32 enabled);

    qint16 linkState_ = 0;
    std::optional<qint16> linkStateOverride_;
    QStringList availablePorts_;
    Air air_ = Air::demo();
    int answerDelayMs_ = DefaultAnswerDelayMs;
    struct InjectedError {
        qint16 number;
        QString description;
    };
    std::optional<InjectedError> injectedError_;
    using Exchange = std::pair<const void *, Request>;
    std::set<Exchange> inFlight_; // repeatable requests whose answer has not landed
    QString scenarioSource_;
    QString scenarioProblem_;
    DelayedCalls later_;
};
