#include "radionet/WireProtocol.h"

#include <QStringDecoder>
#include <QtEndian>

namespace wire {

namespace {

constexpr int HeaderSize = 6; // version, sequence, Sat ID, command, length
constexpr int CrcSize = 2;
constexpr int MinFrame = HeaderSize + CrcSize;
constexpr int MaxFrame = MinFrame + MaxPayload;
// COBS adds one code byte per started block of 254 bytes.
constexpr int MaxStuffed = MaxFrame + MaxFrame / 254 + 1;
constexpr quint8 LongestBlock = 0xFF; // a code byte for 254 data bytes and no zero after them

template <typename T> void appendLe(QByteArray &out, T value) {
    char bytes[sizeof(T)];
    qToLittleEndian(value, bytes);
    out.append(bytes, sizeof(T));
}

template <typename... T> QByteArray littleEndian(T... values) {
    QByteArray out;
    (appendLe(out, values), ...);
    return out;
}

template <typename T> T readLe(const QByteArray &bytes, qsizetype at) {
    return qFromLittleEndian<T>(bytes.constData() + at);
}

QByteArray stuff(const QByteArray &raw) {
    QByteArray out;
    out.reserve(raw.size() + raw.size() / 254 + 1);
    qsizetype codeAt = 0;
    quint8 code = 1;
    out.append(char(0)); // the first code byte, written when its block ends
    const auto closeBlock = [&] {
        out[codeAt] = char(code);
        codeAt = out.size();
        out.append(char(0));
        code = 1;
    };
    for (const char c : raw) {
        if (c == 0) {
            closeBlock();
            continue;
        }
        out.append(c);
        if (++code == LongestBlock)
            closeBlock();
    }
    out[codeAt] = char(code);
    return out;
}

// The bytes of one run between delimiters, or nothing when a code byte points past its end.
std::optional<QByteArray> unstuff(const QByteArray &run) {
    QByteArray out;
    out.reserve(run.size());
    qsizetype at = 0;
    while (at < run.size()) {
        const quint8 code = quint8(run[at]);
        if (code == 0 || at + code > run.size())
            return std::nullopt;
        out.append(run.constData() + at + 1, code - 1);
        at += code;
        if (code != LongestBlock && at < run.size())
            out.append(char(0));
    }
    return out;
}

std::optional<Frame> parse(const QByteArray &run) {
    const std::optional<QByteArray> raw = unstuff(run);
    if (!raw || raw->size() < MinFrame)
        return std::nullopt;
    const int length = quint8(raw->at(5));
    if (length > MaxPayload || raw->size() != MinFrame + length)
        return std::nullopt;
    if (crc16(QByteArrayView(*raw).chopped(CrcSize)) != readLe<quint16>(*raw, HeaderSize + length))
        return std::nullopt;
    return Frame{.version = quint8(raw->at(0)),
                 .sequence = quint8(raw->at(1)),
                 .satId = readLe<qint16>(*raw, 2),
                 .command = quint8(raw->at(4)),
                 .payload = raw->mid(HeaderSize, length)};
}

} // namespace

quint16 crc16(QByteArrayView bytes) {
    quint16 crc = 0xFFFF;
    for (const char byte : bytes) {
        crc ^= quint16(quint8(byte) << 8);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 0x8000) ? quint16((crc << 1) ^ 0x1021) : quint16(crc << 1);
    }
    return crc;
}

QByteArray encode(const Frame &frame) {
    if (frame.payload.size() > MaxPayload)
        return {};
    QByteArray raw;
    raw.reserve(MaxFrame);
    raw.append(char(frame.version));
    raw.append(char(frame.sequence));
    appendLe(raw, frame.satId);
    raw.append(char(frame.command));
    raw.append(char(frame.payload.size()));
    raw.append(frame.payload);
    appendLe(raw, crc16(raw));
    QByteArray line = stuff(raw);
    line.append(char(0));
    return line;
}

void Decoder::feed(QByteArrayView bytes) {
    received_ += quint64(bytes.size());
    for (const char c : bytes) {
        if (c == 0) {
            endOfFrame();
        } else if (overflowed_) {
            continue; // the rest of a run already dropped
        } else if (partial_.size() == MaxStuffed) {
            // No frame is this long: drop it now rather than wait for a delimiter that
            // a babbling line may never send.
            partial_.clear();
            overflowed_ = true;
            ++dropped_;
        } else {
            partial_.append(c);
        }
    }
}

void Decoder::endOfFrame() {
    if (overflowed_) {
        overflowed_ = false; // counted when it grew too long
        return;
    }
    if (partial_.isEmpty())
        return; // two delimiters in a row: a sender may start a frame with one
    std::optional<Frame> frame = parse(partial_);
    partial_.clear();
    if (!frame) {
        ++dropped_;
        return;
    }
    ++decoded_;
    ready_.push_back(std::move(*frame));
}

std::optional<Frame> Decoder::next() {
    if (ready_.empty())
        return std::nullopt;
    Frame frame = std::move(ready_.front());
    ready_.pop_front();
    return frame;
}

void Decoder::reset() {
    partial_.clear();
    overflowed_ = false;
    ready_.clear();
}

QByteArray payloadOf(const Identity &identity) {
    QByteArray text = identity.text.toUtf8();
    if (text.size() > MaxPayload) {
        // Cut before the character that crosses the limit, never inside it.
        qsizetype cut = MaxPayload;
        while (cut > 0 && (quint8(text[cut]) & 0xC0) == 0x80)
            --cut;
        text.truncate(cut);
    }
    return text;
}

QByteArray payloadOf(const Config &config) {
    return littleEndian(config.interfaceCode, config.enabled, config.rfVersionMajor,
                        config.rfVersionMinor);
}

QByteArray payloadOf(const Status &status) {
    return littleEndian(status.rxFree, status.txFree);
}

QByteArray payloadOf(const Configure &configure) {
    return littleEndian(configure.newSatId, configure.interfaceCode, configure.enabled);
}

QByteArray payloadOf(const Polling &polling) {
    return QByteArray(1, polling.on ? char(1) : char(0));
}

QByteArray payloadOf(Refusal reason) {
    return QByteArray(1, char(reason));
}

std::optional<Identity> identityFrom(const QByteArray &payload) {
    if (payload.size() > MaxPayload)
        return std::nullopt;
    // Keep a leading byte-order mark: the text is carried as it is, not interpreted.
    QStringDecoder toText(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                    QStringDecoder::Flag::ConvertInitialBom);
    QString text = toText(payload);
    if (toText.hasError())
        return std::nullopt;
    return Identity{std::move(text)};
}

std::optional<Config> configFrom(const QByteArray &payload) {
    if (payload.size() != 10)
        return std::nullopt;
    return Config{.interfaceCode = readLe<qint16>(payload, 0),
                  .enabled = readLe<qint32>(payload, 2),
                  .rfVersionMajor = readLe<qint16>(payload, 6),
                  .rfVersionMinor = readLe<qint16>(payload, 8)};
}

std::optional<Status> statusFrom(const QByteArray &payload) {
    if (payload.size() != 4)
        return std::nullopt;
    return Status{.rxFree = readLe<qint16>(payload, 0), .txFree = readLe<qint16>(payload, 2)};
}

std::optional<Configure> configureFrom(const QByteArray &payload) {
    if (payload.size() != 8)
        return std::nullopt;
    return Configure{.newSatId = readLe<qint16>(payload, 0),
                     .interfaceCode = readLe<qint16>(payload, 2),
                     .enabled = readLe<qint32>(payload, 4)};
}

std::optional<Polling> pollingFrom(const QByteArray &payload) {
    if (payload.size() != 1 || quint8(payload[0]) > 1)
        return std::nullopt;
    return Polling{payload[0] == 1};
}

std::optional<Refusal> refusalFrom(const QByteArray &payload) {
    if (payload.size() != 1 || payload[0] < char(Refusal::UnknownCommand) ||
        payload[0] > char(Refusal::UnsupportedVersion))
        return std::nullopt;
    return Refusal(payload[0]);
}

namespace {

QString commandName(const Frame &frame) {
    switch (frame.kind()) {
    case Command::Detect:
        return QStringLiteral("Detect");
    case Command::ReadConfig:
        return QStringLiteral("ReadConfig");
    case Command::ReadStatus:
        return QStringLiteral("ReadStatus");
    case Command::Configure:
        return QStringLiteral("Configure");
    case Command::Polling:
        return QStringLiteral("Polling");
    case Command::Refused:
        return QStringLiteral("Refused");
    }
    return QStringLiteral("command 0x%1").arg(frame.command & ~AnswerBit, 2, 16, QChar(u'0'));
}

QString reasonText(Refusal reason) {
    switch (reason) {
    case Refusal::UnknownCommand:
        return QStringLiteral("unknown command");
    case Refusal::BadPayload:
        return QStringLiteral("bad payload");
    case Refusal::UnsupportedVersion:
        return QStringLiteral("unsupported version");
    }
    return {};
}

template <typename T, typename Text>
std::optional<QString> textOf(const std::optional<T> &value, Text text) {
    if (!value)
        return std::nullopt;
    return text(*value);
}

std::optional<QString> noPayload(const QByteArray &payload) {
    return payload.isEmpty() ? std::optional(QString()) : std::nullopt;
}

// What a frame's payload says, or nothing when it is not what the command carries.
std::optional<QString> payloadText(const Frame &frame) {
    const QByteArray &payload = frame.payload;
    const bool answer = frame.isAnswer();
    switch (frame.kind()) {
    case Command::Detect:
        if (!answer)
            return noPayload(payload);
        return textOf(identityFrom(payload),
                      [](const Identity &i) { return QStringLiteral("\"%1\"").arg(i.text); });
    case Command::ReadConfig:
        if (!answer)
            return noPayload(payload);
        return textOf(configFrom(payload), [](const Config &c) {
            return QStringLiteral("interface %1 enabled %2 rf %3.%4")
                .arg(c.interfaceCode)
                .arg(c.enabled)
                .arg(c.rfVersionMajor)
                .arg(c.rfVersionMinor);
        });
    case Command::ReadStatus:
        if (!answer)
            return noPayload(payload);
        return textOf(statusFrom(payload), [](const Status &s) {
            return QStringLiteral("rx %1 tx %2").arg(s.rxFree).arg(s.txFree);
        });
    case Command::Configure:
        if (answer)
            return noPayload(payload);
        return textOf(configureFrom(payload), [](const Configure &c) {
            return QStringLiteral("new id %1 interface %2 enabled %3")
                .arg(c.newSatId)
                .arg(c.interfaceCode)
                .arg(c.enabled);
        });
    case Command::Polling:
        return textOf(pollingFrom(payload), [](const Polling &p) {
            return p.on ? QStringLiteral("on") : QStringLiteral("off");
        });
    case Command::Refused:
        return textOf(refusalFrom(payload), reasonText);
    }
    return payload.isEmpty() ? QString() : QStringLiteral("%1 bytes").arg(payload.size());
}

} // namespace

QString describe(const Frame &frame) {
    QString line = frame.satId == LinkAddress ? QStringLiteral("link")
                                              : QStringLiteral("sat %1").arg(frame.satId);
    line += QStringLiteral(" #%1 ").arg(frame.sequence) + commandName(frame);
    // A refusal is always an answer: saying so adds nothing.
    if (frame.isAnswer() && frame.kind() != Command::Refused)
        line += QStringLiteral(" answer");
    if (frame.version != ProtocolVersion)
        return line +
               QStringLiteral(" version %1, %2 bytes").arg(frame.version).arg(frame.payload.size());
    const std::optional<QString> details = payloadText(frame);
    if (!details)
        return line + QStringLiteral(" bad payload (%1 bytes)").arg(frame.payload.size());
    return details->isEmpty() ? line : line + u' ' + *details;
}

} // namespace wire
