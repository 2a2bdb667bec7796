#include "radionet/WireProtocol.h"

#include <QFile>
#include <QtTest>

using namespace wire;

namespace {

// A payload parsed and written back; nothing when refused.
using Reparse = std::optional<QByteArray> (*)(const QByteArray &);
template <auto from> std::optional<QByteArray> reparse(const QByteArray &payload) {
    const auto value = from(payload);
    return value ? std::optional(payloadOf(*value)) : std::nullopt;
}

// The byte strings of one row of the page's worked example, so the page cannot drift.
QByteArrayList exampleRow(const QByteArray &label) {
    QFile page(QStringLiteral(NORVALE_REFERENCE_DIR "/../../docs/wire-protocol.md"));
    const QByteArray text = page.open(QIODevice::ReadOnly) ? page.readAll() : QByteArray();
    const qsizetype at = text.indexOf("\n| " + label + " |");
    const QByteArrayList parts = text.mid(at, text.indexOf('\n', at + 1) - at).split('`');
    QByteArrayList bytes;
    for (qsizetype i = 1; at >= 0 && i < parts.size(); i += 2)
        bytes << QByteArray::fromHex(parts[i]);
    return bytes;
}

QByteArray statusAnswer(quint8 sequence, quint8 version = ProtocolVersion) {
    return encode(
        {version, sequence, 3, quint8(Command::ReadStatus) | AnswerBit, payloadOf(Status{28, 30})});
}

} // namespace

Q_DECLARE_METATYPE(Reparse)

class tst_WireProtocol : public QObject {
    Q_OBJECT

private slots:
    void payloads_data() {
        QTest::addColumn<Reparse>("reparse");
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QByteArray>("layout");
        QTest::addColumn<QByteArrayList>("refused");
        const auto row = [](const char *name, Reparse reparse, const QByteArray &payload,
                            const char *hex, const QByteArrayList &refused) {
            QTest::newRow(name) << reparse << payload << QByteArray::fromHex(hex) << refused;
        };
        const QByteArray a64(64, 'a');
        row("identity, longest", reparse<identityFrom>, payloadOf(Identity{a64}), a64.toHex(),
            {a64 + 'a', "\xC3"});
        row("identity, cut before a character", reparse<identityFrom>,
            payloadOf(Identity{a64.left(62) + QStringLiteral("\u20AC")}), a64.left(62).toHex(), {});
        row("config", reparse<configFrom>, payloadOf(Config{2, -1, 2, 5}), "0200ffffffff02000500",
            {{}, a64.left(9), a64.left(11)});
        row("status", reparse<statusFrom>, payloadOf(Status{28, -30}), "1c00e2ff",
            {{}, a64.left(3), a64.left(5)});
        row("configure", reparse<configureFrom>, payloadOf(Configure{300, 1, 65536}),
            "2c01010000000100", {{}, a64.left(7), a64.left(9)});
        row("polling on", reparse<pollingFrom>, payloadOf(Polling{true}), "01",
            {{}, "\x02", QByteArray(2, 1)});
        row("refusal", reparse<refusalFrom>, payloadOf(Refusal::UnsupportedVersion), "03",
            {{}, QByteArray(1, 0), "\x04", "\x01\x01"});
    }
    void payloads() {
        QFETCH(Reparse, reparse);
        QFETCH(QByteArray, payload);
        QFETCH(QByteArray, layout);
        QFETCH(QByteArrayList, refused);
        QCOMPARE(payload, layout);
        QCOMPARE(reparse(payload), std::optional(payload));
        for (const QByteArray &wrong : refused)
            QVERIFY2(!reparse(wrong), wrong.toHex().constData());

        // Any command may carry any payload as far as the frame goes.
        const Frame frame{ProtocolVersion, 0xA5, LinkAddress, 0xFF, payload};
        Decoder decoder;
        decoder.feed(encode(frame));
        QCOMPARE(decoder.next(), std::optional(frame));
    }
    void workedExample() {
        QCOMPARE(crc16("123456789"), quint16(0x29B1));
        const Frame request{ProtocolVersion, 12, 3, quint8(Command::ReadStatus), {}};
        QCOMPARE(exampleRow("on the line"), (QByteArrayList{encode(request), statusAnswer(12)}));
        QCOMPARE(describe({1, 12, 3, quint8(Command::ReadStatus) | AnswerBit,
                           payloadOf(Status{28, 30})}),
                 QStringLiteral("sat 3 #12 ReadStatus answer rx 28 tx 30"));
    }
    // Every line goes in at once, then again one byte at a time.
    void resynchronises_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QList<int>>("sequences");
        QTest::addColumn<int>("dropped");
        const QByteArray a = statusAnswer(1), b = statusAnswer(2), c = statusAnswer(3);
        QByteArray corrupted = a, longer = a;
        corrupted[5] = char(corrupted[5] ^ 0x40);
        longer.insert(a.size() - 1, '\x7f')[a.size() - 4] = 4; // one byte past the CRC
        const QByteArray garbage("\x55\xAA\x13");
        QTest::newRow("garbage before, then a delimiter") << garbage + '\0' + a << QList{1} << 1;
        QTest::newRow("garbage joined to a frame") << garbage + a + b << QList{2} << 1;
        QTest::newRow("garbage between") << a + garbage + b + c << QList{1, 3} << 1;
        QTest::newRow("garbage after, unended") << a + garbage << QList{1} << 0;
        QTest::newRow("corrupted byte") << corrupted + b << QList{2} << 1;
        // The last block cut off: the stuffing is sound, the length is not.
        QTest::newRow("truncated") << a.chopped(4) + '\0' + b << QList{2} << 1;
        QTest::newRow("longer than its length") << longer + b << QList{2} << 1;
        QTest::newRow("bad stuffing") << QByteArray("\x09\x01\x02", 4) + a << QList{1} << 1;
        QTest::newRow("over-long run, ended") << QByteArray(200, 0x11) + '\0' + a << QList{1} << 1;
        QTest::newRow("over-long run, unended") << QByteArray(200, 0x11) << QList<int>{} << 1;
        QTest::newRow("two delimiters") << '\0' + a + '\0' + b << QList{1, 2} << 0;
        QTest::newRow("other version") << statusAnswer(4, 2) << QList{4} << 0;
    }
    void resynchronises() {
        QFETCH(QByteArray, line);
        QFETCH(QList<int>, sequences);
        QFETCH(int, dropped);
        for (const qsizetype step : {line.size(), qsizetype(1)}) {
            Decoder decoder;
            for (qsizetype at = 0; at < line.size(); at += step)
                decoder.feed(QByteArrayView(line).sliced(at, qMin(step, line.size() - at)));
            QList<int> seen;
            while (const std::optional<Frame> frame = decoder.next())
                seen << frame->sequence;
            QCOMPARE(seen, sequences);
            QCOMPARE(decoder.framesDropped(), quint64(dropped));
            QCOMPARE(decoder.framesDecoded(), quint64(sequences.size()));
        }
    }
};

QTEST_APPLESS_MAIN(tst_WireProtocol)
#include "tst_wireprotocol.moc"
