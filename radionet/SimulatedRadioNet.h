#pragma once

#include "radionet/RadioNetControl.h"
#include "radionet/SimulatedNetObjects.h"

#include <QElapsedTimer>
#include <QStringList>
#include <QTimer>
#include <deque>
#include <functional>
#include <optional>
#include <set>
#include <vector>

struct OnAirSatellite { // a satellite on the air, as the radio sees it
    qint16 satId;
    QString identity = QStringLiteral("QX NORVALE");
    qint16 interfaceCode = 1;
    qint32 enabled = 1;
    qint16 rfVersionMajor = 2, rfVersionMinor = 5;
    qint16 rxFree = 28, txFree = 30;
    bool answers = true; // false: it stays silent
};

// The program's own radio network: a small model of a serial link and of the
// satellites on the air. Every answer or error reaches the event loop first and is
// emitted from there, never from inside the call that caused it; answers to the
// four satellite requests arrive after the answer delay, in the order of the calls.
//
// A silent satellite neither answers nor takes a configuration: to the radio it is
// as good as absent.
class SimulatedRadioNet : public RadioNetControl {
    Q_OBJECT

public:
    // NetError numbers of the link itself.
    static constexpr qint16 PortNotOpenError = 1;
    static constexpr qint16 PortNotAvailableError = 2;
    // A Detect sent to this Sat ID is answered by whichever satellite hears it first.
    static constexpr qint16 BroadcastSatId = 2047;
    static constexpr int DefaultAnswerDelayMs = 30;

    explicit SimulatedRadioNet(QObject *parent = nullptr);

    QString BaudRate() const override { return baudRate_; }
    void setBaudRate(const QString &baudRate) override { baudRate_ = baudRate; }
    SatelliteList &Satellites() override { return satellites_; }
    TerminalList &Devices() override { return devices_; }
    bool StartPolling() override;
    bool StopPolling() override;
    QString CommPort() const override { return commPort_; }
    void setCommPort(const QString &port) override { commPort_ = port; }
    qint16 TimeOut() const override { return timeOut_; }
    void setTimeOut(qint16 timeOut) override { timeOut_ = timeOut; }
    bool OpenPort() override;
    bool ClosePort() override;
    qint16 LinkState() const override;
    qint32 Synchro() const override { return synchro_; }
    void setSynchro(qint32 synchro) override { synchro_ = synchro; }
    qint16 Timer() const override { return timer_; }
    void setTimer(qint16 timer) override { timer_ = timer; }
    void SetNotification(bool &sendToPc, qint16 &timeNotify, qint16 &timeGoingOn) override;
    void GetNotification(bool &sendToPc, qint16 &timeNotify, qint16 &timeGoingOn) override;
    qint16 Mode() const override { return mode_; }
    void setMode(qint16 mode) override { mode_ = mode; }
    bool Enabled() const override { return enabled_; }
    void setEnabled(bool enabled) override { enabled_ = enabled; }

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
    QStringList callLog() const { return callLog_; } // every method call, in order
    void clearCallLog() { callLog_.clear(); }

private:
    friend class SimulatedSatellite;
    friend class SimulatedSatelliteList;
    friend class SimulatedTerminalList;

    enum class Request { Detect, RequestConfig, RequestStatus, Configure };

    struct AirEntry {
        OnAirSatellite satellite;
        bool drifts = false; // the demo satellites' memory figures wander a little
        int statusAnswers = 0;
    };

    struct Pending {
        qint64 dueMs;
        std::function<void()> work;
    };

    // A log, not a leak: past 200,000 entries the oldest half goes.
    void log(const QString &entry) {
        if (callLog_.size() >= 200000)
            callLog_.remove(0, 100000);
        callLog_.append(entry);
    }
    void request(Request kind, const std::shared_ptr<SimulatedSatellite> &satellite);
    void answer(Request kind, qint16 address, const std::shared_ptr<SimulatedSatellite> &satellite,
                qint16 newSatId, qint16 interfaceCode, qint32 enabled);
    AirEntry *listening(qint16 satId);
    void post(int delayMs, std::function<void()> work);
    void rearm();
    void deliverNext();

    QString baudRate_ = QStringLiteral("38400");
    QString commPort_ = QStringLiteral("COM1");
    qint16 timeOut_ = 100;
    qint16 timer_ = 100;
    qint32 synchro_ = 1;
    qint16 mode_ = 0;
    bool enabled_ = true;
    bool sendToPc_ = true;
    qint16 timeNotify_ = 1;
    qint16 timeGoingOn_ = 10;

    SimulatedSatelliteList satellites_;
    SimulatedTerminalList devices_;

    qint16 linkState_ = 0;
    std::optional<qint16> linkStateOverride_;
    QStringList availablePorts_;
    std::vector<AirEntry> air_; // in putOnAir order: the order a broadcast is heard
    int answerDelayMs_ = DefaultAnswerDelayMs;
    struct InjectedError {
        qint16 number;
        QString description;
    };
    std::optional<InjectedError> injectedError_;
    QStringList callLog_;
    using Exchange = std::pair<const void *, Request>;
    std::set<Exchange> inFlight_; // repeatable requests whose answer has not landed

    // Outcomes waiting for their time, ordered by due time and, for equal times, by
    // the order they were posted. One outcome is delivered per timer shot, so a
    // handler that runs a nested event loop still sees the rest arrive in order.
    std::deque<Pending> pending_;
    QElapsedTimer clock_;
    QTimer pump_;
};
