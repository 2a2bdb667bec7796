// Over a serial line: the program's serial network talking to norvale-netsim on a
// pseudo-terminal that the emulator paces at 38400 baud, as a real line would be.
// The survey asks each satellite in turn and is held against the time its bytes take
// on the wire; the live test is held against what the line can carry.
#include "BenchWindow.h"
#include "Clock.h"
#include "LiveProbes.h"
#include "Report.h"
#include "Sections.h"
#include "radionet/SerialRadioNet.h"
#include "radionet/WireProtocol.h"

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <functional>

namespace {

constexpr int Baud = 38400;
constexpr double BitsPerByte = 10; // 8N1: a start and a stop bit around each byte
constexpr int SurveySatellites = 16;
constexpr int ExchangesPerSatellite = 3; // Detect, RequestConfig, RequestStatus
constexpr int LiveSatellites = 15;
constexpr double SurveyBudget = 1.25; // wall time / wire time
// Answers a second / the line's maximum. The emulator waits in whole milliseconds (a
// request is taken 3 ms after it came, its answer leaves 4 ms later, for 6.25 ms of
// line time), so it lets through at most some 85 % of the line, and the two processes
// handing the line to each other on a shared machine take 70 to 80 %.
constexpr double LineShareBudget = 0.65;
constexpr double InputBudgetMs = 100;
constexpr int AnswersPerProbe = 10; // the line carries some 150 answers a second
constexpr int ExchangeTimeoutMs = 2000;
constexpr int EmulatorTimeoutMs = 5000;

double wireMs(quint64 bytes) {
    return double(bytes) * BitsPerByte * 1000 / Baud;
}

quint64 lineBytes(const SerialRadioNet &net) {
    const SerialRadioNet::Counters counters = net.counters();
    return counters.bytesSent + counters.bytesReceived;
}

// norvale-netsim on a new pseudo-terminal at Baud, with `satellites` satellites
// (Sat IDs 1, 2, ...) answering at once and nothing lost; stopped with its owner.
class Emulator {
public:
    Emulator(const QString &program, int satellites) {
        const QString scenario = folder_.filePath(QStringLiteral("air.ini"));
        QFile file(scenario);
        if (!folder_.isValid() || !file.open(QIODevice::WriteOnly)) {
            error_ = QStringLiteral("cannot write the scenario file");
            return;
        }
        QByteArray text = "[Air]\nAnswerDelayMs=0\nDrift=0\nLossRate=0\n";
        for (int id = 1; id <= satellites; ++id)
            text += QStringLiteral("[Satellite%1]\nSatId=%1\n").arg(id).toLatin1();
        file.write(text);
        file.close();

        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_.start(program, {QStringLiteral("--pty"), QStringLiteral("--baud"),
                                 QString::number(Baud), QStringLiteral("--scenario"), scenario});
        // Its first line is the device it serves.
        while (!process_.canReadLine()) {
            if (!process_.waitForReadyRead(EmulatorTimeoutMs)) {
                error_ = QStringLiteral("%1 did not say its device: %2")
                             .arg(program, process_.errorString());
                return;
            }
        }
        device_ = QString::fromLocal8Bit(process_.readLine().trimmed());
    }

    ~Emulator() {
        if (process_.state() == QProcess::NotRunning)
            return;
        process_.terminate();
        if (!process_.waitForFinished(EmulatorTimeoutMs))
            process_.kill();
        process_.waitForFinished(EmulatorTimeoutMs);
    }

    // Empty when it did not start; error() says why.
    QString device() const { return device_; }
    QString error() const { return error_; }

private:
    QTemporaryDir folder_;
    QProcess process_;
    QString device_;
    QString error_;
};

// Each request waited for: its answer's event, or the first NetError.
class Waiter {
public:
    explicit Waiter(RadioNetControl &net) {
        QObject::connect(&net, &RadioNetControl::SatelliteAnswered, &context_,
                         [this] { ++events_; });
        QObject::connect(&net, &RadioNetControl::ConfigReceived, &context_, [this] { ++events_; });
        QObject::connect(&net, &RadioNetControl::StatusReceived, &context_, [this] { ++events_; });
        QObject::connect(&net, &RadioNetControl::NetError, &context_,
                         [this](qint16, const QString &text) { error_ = text; });
    }

    // False on an error or when no answer came in time.
    bool exchange(const std::function<void()> &request) {
        const int before = events_;
        request();
        return waitUntil([&] { return events_ > before || !error_.isEmpty(); },
                         ExchangeTimeoutMs) &&
               error_.isEmpty();
    }

    QString error() const {
        return error_.isEmpty() ? QStringLiteral("an answer did not come") : error_;
    }

private:
    QObject context_;
    int events_ = 0;
    QString error_;
};

struct SurveyRun {
    double wallMs = 0;
    quint64 bytes = 0;
};

void benchSurvey(Report &report, const BenchOptions &options, const QString &netsim) {
    const QString number = QStringLiteral("7");
    const QString measure = QStringLiteral("Survey over the line");
    const Emulator emulator(netsim, SurveySatellites);
    if (emulator.device().isEmpty())
        return report.fail(number, measure, emulator.error());

    SerialRadioNet net;
    Waiter waiter(net);
    net.setCommPort(emulator.device());
    net.setBaudRate(QString::number(Baud));
    if (!net.OpenPort())
        return report.fail(number, measure,
                           QStringLiteral("cannot open %1").arg(emulator.device()));
    for (int id = 1; id <= SurveySatellites; ++id)
        net.Satellites().Add(qint16(id));

    // One survey first, unmeasured: the emulator and the port have then done it once.
    std::vector<SurveyRun> runs;
    for (int run = -1; run < options.serialRuns; ++run) {
        const quint64 bytesBefore = lineBytes(net);
        const std::int64_t wall = benchclock::monotonicNs();
        for (int position = 1; position <= SurveySatellites; ++position) {
            const SatellitePtr satellite = net.Satellites().Item(qint16(position));
            if (!waiter.exchange([&] { satellite->Detect(); }) ||
                !waiter.exchange([&] { satellite->RequestConfig(); }) ||
                !waiter.exchange([&] { satellite->RequestStatus(); }))
                return report.fail(
                    number, measure,
                    QStringLiteral("satellite %1: %2").arg(position).arg(waiter.error()));
        }
        if (run >= 0)
            runs.push_back(
                {double(benchclock::monotonicNs() - wall) / 1e6, lineBytes(net) - bytesBefore});
    }
    net.ClosePort();

    std::vector<double> wall, wire, ratios, overheadMs;
    constexpr int Exchanges = SurveySatellites * ExchangesPerSatellite;
    for (const SurveyRun &run : runs) {
        wall.push_back(run.wallMs);
        wire.push_back(wireMs(run.bytes));
        ratios.push_back(run.wallMs / wireMs(run.bytes));
        overheadMs.push_back((run.wallMs - wireMs(run.bytes)) / Exchanges);
    }
    const double ratio = benchclock::median(ratios);
    report.add(
        {number,
         QStringLiteral("Survey over the line: %1 satellites x 3 exchanges").arg(SurveySatellites),
         formatMs(benchclock::median(wall)),
         QStringLiteral("wire time %1 (%2 bytes at %3 baud): %4; %5 more per exchange")
             .arg(formatMs(benchclock::median(wire)))
             .arg(runs.front().bytes)
             .arg(Baud)
             .arg(formatRatio(ratio), formatUs(benchclock::median(overheadMs) * 1000)),
         QStringLiteral("<= %1 wire").arg(formatRatio(SurveyBudget)),
         ratio <= SurveyBudget ? Report::Verdict::Kept : Report::Verdict::Missed});
}

// The most status exchanges a second the line can carry, one after the other: a
// request and its answer, as encoded on the line.
double lineMaximum() {
    const wire::Frame request{
        .sequence = 1, .satId = 1, .command = quint8(wire::Command::ReadStatus), .payload = {}};
    const wire::Frame answer{.sequence = 1,
                             .satId = 1,
                             .command = quint8(quint8(wire::Command::ReadStatus) | wire::AnswerBit),
                             .payload = wire::payloadOf(wire::Status{28, 30})};
    const qsizetype bytes = wire::encode(request).size() + wire::encode(answer).size();
    return Baud / BitsPerByte / double(bytes);
}

void benchLiveOverTheLine(Report &report, const BenchOptions &options, const QString &netsim) {
    const QString number = QStringLiteral("7b");
    const QString measure = QStringLiteral("Live test over the line");
    const Emulator emulator(netsim, LiveSatellites);
    if (emulator.device().isEmpty())
        return report.fail(number, measure, emulator.error());

    // The file names the emulator's device as its port, as a technician saves it.
    auto *net = new SerialRadioNet;
    BenchWindow window(net, [&emulator](const QString &folder) {
        const QString file = folder + QStringLiteral("/site15.nvl");
        return writeNetworkFile(file, LiveSatellites, emulator.device()) ? file : QString();
    });
    auto *tabs = window.w<QTabWidget>("Onglet1");
    auto *grid = window.w<QTableWidget>("MFG2");
    auto *start = window.w<QAbstractButton>("b_Debut_test");
    if (!window.shown() || !tabs || !grid || !start || net->Satellites().Count() != LiveSatellites)
        return report.fail(number, measure,
                           QStringLiteral("the window did not come up with 15 satellites"));

    tabs->setCurrentIndex(2); // the test tab opens the port and starts the network
    if (net->LinkState() != 2)
        return report.fail(number, measure,
                           QStringLiteral("the test tab did not open %1").arg(emulator.device()));

    QObject context;
    qint64 answers = 0;
    InputProbe probe(*grid);
    QObject::connect(net, &RadioNetControl::StatusReceived, &context, [&] {
        if (++answers % AnswersPerProbe == 0)
            probe.post();
    });
    start->click();
    if (!waitUntil([&] { return allRowsAnswered(*grid, LiveSatellites); },
                   (LiveSatellites + 5) * 500))
        return report.fail(number, measure, QStringLiteral("not every satellite answered"));

    std::vector<double> rates, busy;
    probe.latenciesMs.clear();
    for (int run = 0; run < options.liveWindows; ++run) {
        const qint64 answersBefore = answers;
        const quint64 bytesBefore = lineBytes(*net);
        const std::int64_t wall = benchclock::monotonicNs();
        runEventLoopFor(options.liveWindowMs);
        const double ms = double(benchclock::monotonicNs() - wall) / 1e6;
        rates.push_back(double(answers - answersBefore) * 1000 / ms);
        busy.push_back(wireMs(lineBytes(*net) - bytesBefore) / ms);
    }
    const SerialRadioNet::Counters counters = net->counters();
    tabs->setCurrentIndex(0); // the test ends and the port is closed
    runEventLoopFor(100);

    const double rate = benchclock::median(rates);
    const double maximum = lineMaximum();
    const std::vector<double> &latencies = probe.latenciesMs;
    const double worstMs =
        latencies.empty() ? 0 : *std::max_element(latencies.begin(), latencies.end());
    report.add(
        {number,
         QStringLiteral("Live test over the line, %1 satellites: StatusReceived")
             .arg(LiveSatellites),
         formatCount(rate) + QStringLiteral(" /s"),
         QStringLiteral("line maximum %1 /s: %2; line busy %3, %4 retries, %5 x %6 ms")
             .arg(formatCount(maximum), formatPercent(rate / maximum),
                  formatPercent(benchclock::median(busy)))
             .arg(counters.retries)
             .arg(options.liveWindows)
             .arg(options.liveWindowMs),
         QStringLiteral(">= %1 of maximum").arg(formatPercent(LineShareBudget)),
         rate >= LineShareBudget * maximum ? Report::Verdict::Kept : Report::Verdict::Missed});
    report.add(
        {QStringLiteral("7c"), QStringLiteral("Key press during the live test over the line"),
         formatMs(benchclock::median(latencies)),
         QStringLiteral("worst %1 of %2 key presses").arg(formatMs(worstMs)).arg(latencies.size()),
         QStringLiteral("<= %1").arg(formatMs(InputBudgetMs)),
         !latencies.empty() && worstMs <= InputBudgetMs ? Report::Verdict::Kept
                                                        : Report::Verdict::Missed});
}

} // namespace

void benchSerial(Report &report, const BenchOptions &options) {
    // Built at the top of the build folder, the bench one folder down.
    const QString netsim =
        QDir::cleanPath(options.programDir + QStringLiteral("/../norvale-netsim"));
    benchSurvey(report, options, netsim);
    benchLiveOverTheLine(report, options, netsim);
    report.note(QStringLiteral("Over the line: norvale-netsim on a pseudo-terminal at %1 baud, "
                               "answering at once; wire time = bytes both ways x 10 bits / %1.")
                    .arg(Baud));
}
