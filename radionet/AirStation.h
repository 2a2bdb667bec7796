#pragma once

#include "radionet/Air.h"
#include "radionet/WireProtocol.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <deque>
#include <optional>

// The far end of a serial line: takes the bytes that came off the line, answers the
// requests from the air, and hands back the bytes to write, whatever carries them.
//
// It paces the line as a real one at the given speed would: a request is taken when
// its last byte would have arrived, an answer handed out when its last byte would
// have left, one frame at a time. A pseudo-terminal has no speed of its own; a real
// port paces itself and takes baud 0, no pacing.
class AirStation : public QObject {
    Q_OBJECT

public:
    AirStation(Air air, int answerDelayMs, int baud, QObject *parent = nullptr);

    void received(QByteArrayView bytes);

    const wire::Decoder &decoder() const { return decoder_; }

signals:
    void send(const QByteArray &bytes);
    // One line per frame taken ("in ...") or sent ("out ..."), and per frame dropped.
    void traced(const QString &line);

private:
    struct Request {
        qint64 dueNs;
        wire::Frame frame;
    };
    struct Answer {
        qint64 dueNs;
        QByteArray bytes;
        QString description;
    };
    // A Configure carried out, so that its retry is acknowledged and not done again.
    struct ConfigureDone {
        qint16 oldSatId;
        quint8 sequence;
        QByteArray payload;
        friend bool operator==(const ConfigureDone &, const ConfigureDone &) = default;
    };

    qint64 lineNs(qsizetype bytes) const;
    void noteDropped();
    void take(const Request &request);
    std::optional<wire::Frame> answerTo(const wire::Frame &request);
    void pump();
    void rearm();

    Air air_;
    qint64 answerDelayNs_;
    int baud_;
    wire::Decoder decoder_;
    quint64 droppedSeen_ = 0;
    std::optional<ConfigureDone> lastConfigure_;

    QElapsedTimer clock_;
    QTimer timer_;
    qint64 inFreeAtNs_ = 0;  // when the last byte received so far has arrived
    qint64 outFreeAtNs_ = 0; // when the last answer queued has left
    std::deque<Request> requests_;
    std::deque<Answer> answers_;
};
