// Feeds arbitrary bytes as a serial line to the wire decoder, and checks what must hold
// for any line:
// - how the bytes are cut into reads changes nothing: the same frames come out and the
//   same number of runs is dropped;
// - every frame decoded has at most 64 bytes of payload, re-encodes to bytes that decode
//   to the same frame, and each payload that parses writes back to the same bytes;
// - a frame built from the input decodes back to itself, or is refused by the encoder
//   when its payload is too long.

#include "radionet/WireProtocol.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

[[noreturn]] void fail(const char *what) {
    std::fprintf(stderr, "fuzz_wireframe: %s\n", what);
    std::abort();
}

// The largest frame on the line: 72 bytes, one code byte of stuffing, the delimiter.
constexpr qsizetype LongestLine = 74;

struct Decoded {
    std::vector<wire::Frame> frames;
    quint64 dropped = 0;
};

// The whole line in one read, or cut into reads of 1 to 32 bytes whose sizes come from
// the line itself, so that the fuzzer moves the cuts as it changes the bytes.
Decoded decode(QByteArrayView line, bool cut) {
    wire::Decoder decoder;
    for (qsizetype at = 0; at < line.size();) {
        const qsizetype step = cut ? 1 + quint8(line[at]) % 32 : line.size();
        decoder.feed(line.sliced(at, qMin(step, line.size() - at)));
        at += step;
    }
    if (decoder.bytesReceived() != quint64(line.size()))
        fail("bytes fed and bytes received differ");
    Decoded out;
    while (std::optional<wire::Frame> frame = decoder.next())
        out.frames.push_back(std::move(*frame));
    out.dropped = decoder.framesDropped();
    if (decoder.framesDecoded() != out.frames.size())
        fail("frames decoded and frames taken differ");
    return out;
}

template <typename Parse> void checkWritesBack(Parse parse, const QByteArray &payload) {
    if (const auto value = parse(payload); value && wire::payloadOf(*value) != payload)
        fail("a payload that parses writes back to other bytes");
}

void checkRoundTrip(const wire::Frame &frame) {
    const QByteArray line = wire::encode(frame);
    if (line.isEmpty() || line.size() > LongestLine || line.indexOf('\0') != line.size() - 1)
        fail("an encoded frame is empty, too long or not delimited once at its end");
    const Decoded back = decode(line, false);
    if (back.dropped != 0 || back.frames.size() != 1 || back.frames.front() != frame)
        fail("an encoded frame does not decode to itself");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const QByteArrayView line(data, qsizetype(size));
    const Decoded whole = decode(line, false);
    const Decoded cut = decode(line, true);
    if (whole.frames != cut.frames || whole.dropped != cut.dropped)
        fail("cutting the line into reads changed what was decoded");

    for (const wire::Frame &frame : whole.frames) {
        if (frame.payload.size() > wire::MaxPayload)
            fail("a decoded payload is longer than the limit");
        checkRoundTrip(frame);
        checkWritesBack(wire::identityFrom, frame.payload);
        checkWritesBack(wire::configFrom, frame.payload);
        checkWritesBack(wire::statusFrom, frame.payload);
        checkWritesBack(wire::configureFrom, frame.payload);
        checkWritesBack(wire::pollingFrom, frame.payload);
        checkWritesBack(wire::refusalFrom, frame.payload);
        if (wire::describe(frame).isEmpty())
            fail("a frame has no trace line");
    }

    // The input read as the fields of a frame, with up to 70 bytes of payload.
    if (size >= 5) {
        const wire::Frame built{data[0], data[1], qint16(data[2] | data[3] << 8), data[4],
                                line.sliced(5, qMin<qsizetype>(line.size() - 5, 70)).toByteArray()};
        if (built.payload.size() > wire::MaxPayload) {
            if (!wire::encode(built).isEmpty())
                fail("a payload over the limit was encoded");
        } else {
            checkRoundTrip(built);
        }
    }
    return 0;
}
