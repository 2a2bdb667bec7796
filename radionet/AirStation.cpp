#include "radionet/AirStation.h"

#include <algorithm>
#include <utility>

namespace {

constexpr qint64 NsPerMs = 1'000'000;

wire::Frame answerOf(const wire::Frame &request, wire::Command command, QByteArray payload) {
    return wire::Frame{.sequence = request.sequence,
                       .satId = request.satId,
                       .command = quint8(quint8(command) | wire::AnswerBit),
                       .payload = std::move(payload)};
}

wire::Frame refusal(const wire::Frame &request, wire::Refusal reason) {
    return answerOf(request, wire::Command::Refused, wire::payloadOf(reason));
}

} // namespace

AirStation::AirStation(Air air, int answerDelayMs, int baud, QObject *parent)
    : QObject(parent)
    , air_(std::move(air))
    , answerDelayNs_(qint64(std::max(0, answerDelayMs)) * NsPerMs)
    , baud_(std::max(0, baud)) {
    clock_.start();
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &AirStation::pump);
}

qint64 AirStation::lineNs(qsizetype bytes) const {
    // 8N1: ten bits of line time a byte.
    return baud_ == 0 ? 0 : qint64(bytes) * 10 * 1'000'000'000 / baud_;
}

void AirStation::received(QByteArrayView bytes) {
    // The bytes come in one after another from the moment the first one came, or
    // from when the line is done with the earlier ones.
    const qint64 start = std::max(clock_.nsecsElapsed(), inFreeAtNs_);
    qsizetype from = 0;
    while (from < bytes.size()) {
        const qsizetype delimiter = bytes.indexOf('\0', from);
        const qsizetype to = delimiter < 0 ? bytes.size() : delimiter + 1;
        decoder_.feed(bytes.sliced(from, to - from));
        noteDropped();
        while (std::optional<wire::Frame> frame = decoder_.next())
            requests_.push_back(Request{start + lineNs(to), std::move(*frame)});
        from = to;
    }
    inFreeAtNs_ = start + lineNs(bytes.size());
    rearm();
}

void AirStation::noteDropped() {
    for (; droppedSeen_ < decoder_.framesDropped(); ++droppedSeen_)
        emit traced(QStringLiteral("drop a damaged frame or noise (%1 dropped, %2 decoded so far)")
                        .arg(droppedSeen_ + 1)
                        .arg(decoder_.framesDecoded()));
}

void AirStation::pump() {
    // Everything due goes now, in order: a late timer delays, it never reorders.
    const qint64 now = clock_.nsecsElapsed();
    while (!requests_.empty() && requests_.front().dueNs <= now) {
        const Request request = std::move(requests_.front());
        requests_.pop_front();
        take(request);
    }
    while (!answers_.empty() && answers_.front().dueNs <= now) {
        const Answer answer = std::move(answers_.front());
        answers_.pop_front();
        emit traced(QStringLiteral("out ") + answer.description);
        emit send(answer.bytes);
    }
    rearm();
}

void AirStation::rearm() {
    std::optional<qint64> next;
    if (!requests_.empty())
        next = requests_.front().dueNs;
    if (!answers_.empty())
        next = std::min(next.value_or(answers_.front().dueNs), answers_.front().dueNs);
    if (!next) {
        timer_.stop();
        return;
    }
    // Rounded up: the timer counts whole milliseconds and must not fire early.
    const qint64 waitNs = std::max<qint64>(0, *next - clock_.nsecsElapsed());
    timer_.start(int((waitNs + NsPerMs - 1) / NsPerMs));
}

void AirStation::take(const Request &request) {
    emit traced(QStringLiteral("in  ") + wire::describe(request.frame));
    if (request.frame.isAnswer())
        return; // meant for the master
    const std::optional<wire::Frame> answer = answerTo(request.frame);
    if (!answer)
        return;
    // The satellites answer after their radio delay; the far end's own answers
    // (polling, refusals) at once.
    const bool fromAir =
        answer->satId != wire::LinkAddress && answer->kind() != wire::Command::Refused;
    const qint64 ready = request.dueNs + (fromAir ? answerDelayNs_ : 0);
    QByteArray bytes = wire::encode(*answer);
    // One frame at a time: it starts once the line is done with the one before.
    outFreeAtNs_ = std::max(ready, outFreeAtNs_) + lineNs(bytes.size());
    answers_.push_back(Answer{outFreeAtNs_, std::move(bytes), wire::describe(*answer)});
}

std::optional<wire::Frame> AirStation::answerTo(const wire::Frame &request) {
    using wire::Command, wire::Refusal;
    // Only the request right after a Configure can be its retry.
    const std::optional<ConfigureDone> configured = std::exchange(lastConfigure_, std::nullopt);
    if (request.version != wire::ProtocolVersion)
        return refusal(request, Refusal::UnsupportedVersion);
    if ((request.satId == wire::LinkAddress) != (request.kind() == Command::Polling))
        return refusal(request, Refusal::UnknownCommand);

    const qint16 address = request.satId;
    // The three questions carry nothing.
    const bool asks = request.kind() == Command::Detect || request.kind() == Command::ReadConfig ||
                      request.kind() == Command::ReadStatus;
    if (asks && !request.payload.isEmpty())
        return refusal(request, Refusal::BadPayload);
    switch (request.kind()) {
    case Command::Polling: {
        const std::optional<wire::Polling> polling = wire::pollingFrom(request.payload);
        if (!polling)
            return refusal(request, Refusal::BadPayload);
        // Nothing here polls on its own: the state asked for is the state in force.
        return answerOf(request, Command::Polling, wire::payloadOf(*polling));
    }
    case Command::Detect: {
        const std::optional<Air::Detected> found = air_.detect(address);
        if (!found)
            return std::nullopt;
        // To 2047, the satellite that answers says who it is.
        wire::Frame answer =
            answerOf(request, Command::Detect, wire::payloadOf(wire::Identity{found->identity}));
        answer.satId = found->satId;
        return answer;
    }
    case Command::ReadConfig: {
        const std::optional<OnAirSatellite> s = air_.config(address);
        if (!s)
            return std::nullopt;
        return answerOf(request, Command::ReadConfig,
                        wire::payloadOf(wire::Config{s->interfaceCode, s->enabled,
                                                     s->rfVersionMajor, s->rfVersionMinor}));
    }
    case Command::ReadStatus: {
        const std::optional<Air::Status> status = air_.status(address);
        if (!status)
            return std::nullopt;
        return answerOf(request, Command::ReadStatus,
                        wire::payloadOf(wire::Status{status->rxFree, status->txFree}));
    }
    case Command::Configure: {
        const std::optional<wire::Configure> to = wire::configureFrom(request.payload);
        if (!to)
            return refusal(request, Refusal::BadPayload);
        const ConfigureDone done{address, request.sequence, request.payload};
        // A retry means its acknowledgement went astray: the satellite, now under its
        // new id, acknowledges again without doing it twice.
        const bool retry = configured == done;
        const bool heard =
            retry ? air_.config(to->newSatId).has_value()
                  : air_.configure(address, to->newSatId, to->interfaceCode, to->enabled);
        if (retry || heard)
            lastConfigure_ = done; // a lost retry may come again
        if (!heard)
            return std::nullopt;
        return answerOf(request, Command::Configure, {});
    }
    case Command::Refused: // never a request
        break;
    }
    return refusal(request, Refusal::UnknownCommand);
}
