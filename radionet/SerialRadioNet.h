#pragma once

#include "radionet/DelayedCalls.h"
#include "radionet/NetworkBase.h"
#include "radionet/WireProtocol.h"

#include <QTimer>
#include <deque>
#include <memory>
#include <optional>

class QSerialPort;

// The radio network at the far end of a real serial line, spoken to in the open
// protocol of docs/wire-protocol.md. CommPort names the device ("COM1".."COM9" stand
// for /dev/ttyS0../dev/ttyS8, so that files written on Windows open unchanged),
// BaudRate is the line's speed (8N1, no flow control), TimeOut how long a request
// waits for its answer before it is sent again; after Tries tries it is reported.
//
// One request is on the line at a time, the others wait their turn; asking again for
// a configuration or status already asked rides on that exchange. Everything runs on
// the event loop, and every event comes later, never inside the call that caused it.
class SerialRadioNet : public NetworkBase {
    Q_OBJECT

public:
    // NetError numbers, one per thing a technician does something different about.
    static constexpr qint16 PortNotOpenError = 1;
    static constexpr qint16 PortNotFoundError = 2;
    static constexpr qint16 PermissionError = 3;
    static constexpr qint16 PortBusyError = 4;
    static constexpr qint16 LineLostError = 5;
    static constexpr qint16 NoAnswerError = 6;
    static constexpr qint16 UnreadableError = 7;
    static constexpr qint16 RefusedError = 8;
    static constexpr qint16 PortSettingsError = 9;
    static constexpr int Tries = 3;

    // What went over the line since the port was last opened.
    struct Counters {
        quint64 framesSent = 0, bytesSent = 0;
        quint64 framesReceived = 0, bytesReceived = 0;
        quint64 framesDropped = 0; // garbage, bad CRC, answers nobody waited for
        quint64 retries = 0, timeouts = 0;
    };

    explicit SerialRadioNet(QObject *parent = nullptr);
    ~SerialRadioNet() override;

    bool OpenPort() override;
    bool ClosePort() override;
    bool StartPolling() override;
    bool StopPolling() override;
    qint16 LinkState() const override { return linkState_; }

    // The device a port name stands for.
    static QString deviceFor(const QString &commPort);
    Counters counters() const { return counters_; }

private:
    struct Exchange {
        wire::Frame frame;
        std::shared_ptr<NetSatellite> satellite; // none for the link's own requests
        int triesLeft = Tries;
        quint64 receivedAtStart = 0; // to tell silence from answers that cannot be read
    };

    void request(Request kind, const std::shared_ptr<NetSatellite> &satellite) override;
    void enqueue(Exchange exchange);
    void sendNext();
    void transmit();
    void onReadyRead();
    void onAnswer(const wire::Frame &answer);
    void onTimeout();
    void onPortError();
    void fail(qint16 errNum, const QString &description);
    void closeLine();

    QSerialPort *port_ = nullptr;
    QString device_; // the device open, for the messages
    qint16 linkState_ = 0;
    wire::Decoder decoder_;
    std::deque<Exchange> waiting_;
    std::optional<Exchange> current_;
    quint8 sequence_ = 0;
    QTimer answerTimer_;
    Counters counters_;
    DelayedCalls later_;
};
