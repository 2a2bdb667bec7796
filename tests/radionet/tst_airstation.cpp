#include "radionet/AirStation.h"

#include <QProcess>
#include <QSerialPort>
#include <QtTest>

using namespace wire;

namespace {

Frame frame(qint16 satId, Command command, quint8 sequence, QByteArray payload = {}) {
    return Frame{
        .sequence = sequence, .satId = satId, .command = quint8(command), .payload = payload};
}
Frame answer(qint16 satId, Command command, quint8 sequence, QByteArray payload = {}) {
    return Frame{.sequence = sequence,
                 .satId = satId,
                 .command = quint8(quint8(command) | AnswerBit),
                 .payload = payload};
}
Frame refused(qint16 satId, quint8 sequence, Refusal reason) {
    return answer(satId, Command::Refused, sequence, payloadOf(reason));
}
QByteArray line(const QList<Frame> &frames) {
    QByteArray bytes;
    for (const Frame &f : frames)
        bytes += encode(f);
    return bytes;
}

// Sat IDs 1 (every default) and 3 answer, 4 is silent.
Air testAir(double lossRate) {
    Air air;
    air.put({.satId = 1});
    air.put({.satId = 3, .identity = "QX THREE", .interfaceCode = 0, .rxFree = 56, .txFree = 60});
    air.put({.satId = 4, .answers = false});
    air.setLossRate(lossRate);
    return air;
}

// The frames in the bytes that come off a line.
struct Frames {
    void take(const QByteArray &bytes) {
        decoder.feed(bytes);
        while (std::optional<Frame> f = decoder.next())
            list << *f;
    }
    Decoder decoder;
    QList<Frame> list;
};

} // namespace

class tst_AirStation : public QObject {
    Q_OBJECT

private slots:
    void answers_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QList<Frame>>("expected");
        QTest::addColumn<double>("lossRate");
        QTest::addColumn<int>("dropped");
        const auto row = [](const char *name, const QByteArray &bytes, const QList<Frame> &expected,
                            double lossRate = 0, int dropped = 0) {
            QTest::newRow(name) << bytes << expected << lossRate << dropped;
        };
        const QByteArray identity1 = payloadOf(Identity{"QX NORVALE"});
        const QByteArray configure30 = payloadOf(Configure{30, 1, 0});
        row("detect",
            line({frame(3, Command::Detect, 7), frame(AnySatellite, Command::Detect, 200)}),
            {answer(3, Command::Detect, 7, payloadOf(Identity{"QX THREE"})),
             answer(1, Command::Detect, 200, identity1)});
        row("config, status",
            line({frame(3, Command::ReadConfig, 1), frame(3, Command::ReadStatus, 2)}),
            {answer(3, Command::ReadConfig, 1, payloadOf(Config{0, 1, 2, 5})),
             answer(3, Command::ReadStatus, 2, payloadOf(Status{56, 60}))});
        // A retry of the Configure is acknowledged, not done again; 3 is gone then.
        row("configure",
            line({frame(3, Command::Configure, 9, configure30),
                  frame(3, Command::Configure, 9, configure30), frame(30, Command::ReadConfig, 10),
                  frame(3, Command::Configure, 11, configure30)}),
            {answer(3, Command::Configure, 9), answer(3, Command::Configure, 9),
             answer(30, Command::ReadConfig, 10, payloadOf(Config{1, 0, 2, 5}))});
        row("silent, absent, meant for the master",
            line({frame(4, Command::Detect, 1), frame(4, Command::Configure, 2, configure30),
                  frame(5, Command::ReadStatus, 3), answer(1, Command::Detect, 4)}),
            {});
        row("lost", line({frame(1, Command::Detect, 1)}), {}, 1.0);
        Frame version2 = frame(1, Command::Detect, 5);
        version2.version = 2;
        row("refused",
            line({frame(1, Command::Detect, 1, "x"), frame(1, Command::Configure, 2, "xyz"),
                  frame(1, Command(0x33), 3), frame(1, Command::Polling, 4, payloadOf(Polling{})),
                  version2, frame(LinkAddress, Command::Detect, 6)}),
            {refused(1, 1, Refusal::BadPayload), refused(1, 2, Refusal::BadPayload),
             refused(1, 3, Refusal::UnknownCommand), refused(1, 4, Refusal::UnknownCommand),
             refused(1, 5, Refusal::UnsupportedVersion),
             refused(LinkAddress, 6, Refusal::UnknownCommand)});
        QByteArray corrupted = encode(frame(1, Command::Detect, 1));
        corrupted[3] = char(corrupted[3] ^ 0x40);
        row("garbage, corrupted",
            QByteArray("\x05\x33\x00", 3) + corrupted + line({frame(1, Command::Detect, 2)}),
            {answer(1, Command::Detect, 2, identity1)}, 0, 2);
    }
    void answers() {
        QFETCH(QByteArray, bytes);
        QFETCH(double, lossRate);
        QFETCH(QList<Frame>, expected);
        QFETCH(int, dropped);
        AirStation station(testAir(lossRate), 0, 0);
        Frames sent;
        connect(&station, &AirStation::send, this, [&](const QByteArray &b) { sent.take(b); });
        // The far end answers polling at once: once its answer is in, all before it are.
        const Frame marker = frame(LinkAddress, Command::Polling, 99, payloadOf(Polling{false}));
        station.received(bytes + encode(marker));
        QVERIFY(sent.list.isEmpty());
        QTRY_VERIFY(sent.list.contains(answer(marker.satId, Command::Polling, 99, marker.payload)));
        sent.list.removeLast();
        QCOMPARE(sent.list, expected);
        QCOMPARE(int(station.decoder().framesDropped()), dropped);
    }

    // Requests sent back to back at 9600 baud: each answer goes, in order, once the
    // request and the answer could have crossed the line, one frame at a time.
    void pacesTheLine() {
        const int baud = 9600;
        const QList<Frame> requests{frame(1, Command::Detect, 1), frame(3, Command::ReadStatus, 2),
                                    frame(3, Command::Detect, 3)};
        AirStation station(testAir(0), 0, baud);
        Frames sent;
        QList<qint64> written; // ns after the bytes came
        QElapsedTimer clock;
        connect(&station, &AirStation::send, this, [&](const QByteArray &bytes) {
            written << clock.nsecsElapsed();
            sent.take(bytes);
        });
        clock.start();
        station.received(line(requests));
        QTRY_COMPARE(sent.list.size(), 3);
        const auto lineNs = [](qsizetype bytes) { return bytes * 10 * 1'000'000'000 / baud; };
        qint64 in = 0, out = 0; // when each line could be done, at the earliest
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(sent.list[i].sequence, requests[i].sequence);
            in += lineNs(encode(requests[i]).size());
            out = std::max(in, out) + lineNs(encode(sent.list[i]).size());
            QVERIFY2(written[i] >= out, qPrintable(QString::number(i)));
        }
    }

    void servesAPseudoTerminal() {
        QProcess netsim;
        netsim.start(NORVALE_NETSIM_PATH, {"--pty"});
        QTRY_VERIFY(netsim.canReadLine());
        QSerialPort port(QString::fromLocal8Bit(netsim.readLine().trimmed()));
        // Closed and opened again, as the window does on every tab change.
        QVERIFY2(port.open(QIODevice::ReadWrite), qPrintable(port.errorString()));
        port.close();
        QVERIFY(port.open(QIODevice::ReadWrite));
        port.write(encode(frame(AnySatellite, Command::Detect, 42)));
        Frames got;
        connect(&port, &QSerialPort::readyRead, this, [&] { got.take(port.readAll()); });
        QTRY_COMPARE(got.list.size(), 1);
        QCOMPARE(got.list[0], answer(1, Command::Detect, 42, payloadOf(Identity{"QX NORVALE 1"})));
        netsim.terminate();
        QVERIFY(netsim.waitForFinished());
        QCOMPARE(netsim.exitStatus(), QProcess::NormalExit);
        QCOMPARE(netsim.exitCode(), 0);

        const QString missing = QStringLiteral("/nonexistent/air.ini");
        netsim.start(NORVALE_NETSIM_PATH, {"--pty", "--scenario", missing});
        QVERIFY(netsim.waitForFinished());
        QCOMPARE(netsim.exitCode(), 2);
        QVERIFY(netsim.readAllStandardError().contains(missing.toLocal8Bit()));
    }
};

QTEST_GUILESS_MAIN(tst_AirStation)
#include "tst_airstation.moc"
