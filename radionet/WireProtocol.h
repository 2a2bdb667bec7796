#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QtGlobal>
#include <deque>
#include <optional>

// The open protocol between the program and the network at the far end of a serial
// line (docs/wire-protocol.md). One encoder and one decoder, used by both ends.
namespace wire {

inline constexpr quint8 ProtocolVersion = 1;
// A Detect sent to this Sat ID is answered by the first satellite that hears it.
inline constexpr qint16 AnySatellite = 2047;
// The address of the far end itself, for the commands of the link (polling).
inline constexpr qint16 LinkAddress = -1;
inline constexpr int MaxPayload = 64;

enum class Command : quint8 {
    Detect = 0x01,     // answer: Identity
    ReadConfig = 0x02, // answer: Config
    ReadStatus = 0x03, // answer: Status
    Configure = 0x04,  // request: Configure; answer: empty, an acknowledgement
    Polling = 0x05,    // request and answer: Polling, to LinkAddress
    Refused = 0x7F,    // answer only: Refusal
};
// An answer carries its request's command with this bit set.
inline constexpr quint8 AnswerBit = 0x80;

enum class Refusal : quint8 {
    UnknownCommand = 1,
    BadPayload = 2,
    UnsupportedVersion = 3,
};

struct Frame {
    quint8 version = ProtocolVersion;
    quint8 sequence = 0; // an answer repeats its request's sequence
    qint16 satId = 0;
    quint8 command = 0; // a Command, with AnswerBit on answers
    QByteArray payload; // at most MaxPayload bytes

    bool isAnswer() const { return (command & AnswerBit) != 0; }
    Command kind() const { return static_cast<Command>(command & ~AnswerBit); }
    friend bool operator==(const Frame &, const Frame &) = default;
};

// CRC-16/CCITT-FALSE (poly 0x1021, init 0xFFFF, no reflection, no final xor): the
// check that closes every frame.
quint16 crc16(QByteArrayView bytes);

// The frame as it goes on the line: delimited, stuffed, with its length and CRC.
// A payload longer than MaxPayload is not encodable: the result is empty.
QByteArray encode(const Frame &frame);

// Turns the bytes of a line into frames. Garbage, split and corrupted frames are
// dropped and counted; the decoder always finds the next frame after them.
class Decoder {
public:
    void feed(QByteArrayView bytes);
    // The next complete, valid frame, in the order received.
    std::optional<Frame> next();
    void reset(); // forgets a partial frame and the frames not taken

    quint64 framesDecoded() const { return decoded_; }
    quint64 framesDropped() const { return dropped_; } // bad CRC, length or stuffing
    quint64 bytesReceived() const { return received_; }

private:
    void endOfFrame();

    QByteArray partial_;
    bool overflowed_ = false;
    std::deque<Frame> ready_;
    quint64 decoded_ = 0;
    quint64 dropped_ = 0;
    quint64 received_ = 0;
};

// Payloads. Each from...() answers nothing for a payload of the wrong size.
struct Identity {
    QString text; // UTF-8 on the line, cut to MaxPayload bytes
};
struct Config {
    qint16 interfaceCode = 0;
    qint32 enabled = 0;
    qint16 rfVersionMajor = 0, rfVersionMinor = 0;
};
struct Status {
    qint16 rxFree = 0, txFree = 0;
};
struct Configure {
    qint16 newSatId = 0;
    qint16 interfaceCode = 0;
    qint32 enabled = 0;
};
struct Polling {
    bool on = false;
};

QByteArray payloadOf(const Identity &);
QByteArray payloadOf(const Config &);
QByteArray payloadOf(const Status &);
QByteArray payloadOf(const Configure &);
QByteArray payloadOf(const Polling &);
QByteArray payloadOf(Refusal);
std::optional<Identity> identityFrom(const QByteArray &payload);
std::optional<Config> configFrom(const QByteArray &payload);
std::optional<Status> statusFrom(const QByteArray &payload);
std::optional<Configure> configureFrom(const QByteArray &payload);
std::optional<Polling> pollingFrom(const QByteArray &payload);
std::optional<Refusal> refusalFrom(const QByteArray &payload);

// One line of a trace: "-> sat 3 #12 ReadStatus" / "<- sat 3 #12 ReadStatus answer rx 28 tx 30".
QString describe(const Frame &frame);

} // namespace wire
