#include "radionet/RecordingRadioNet.h"
#include "radionet/SimulatedRadioNet.h"
#include "radionet/gui/NetworkLogModel.h"
#include "support/MainHarness.h"

#include <QtTest>

namespace {

// The log as CSV without its header, times as "t" and latencies as "l".
QStringList csv(const NetworkLog &log) {
    QStringList rows = log.csv().split(u'\n', Qt::SkipEmptyParts);
    rows.replaceInStrings(QRegularExpression(QStringLiteral("^\\d+\\.\\d{3},")), "t,");
    rows.replaceInStrings(QRegularExpression(QStringLiteral(",\\d+\\.\\d{3}$")), ",l");
    return rows.mid(1);
}

// Health as "Sat ID: requests answers missed"; the median, worst and last seen are
// checked against the answers the log holds.
QStringList health(const NetworkLog &log) {
    QStringList out;
    for (const NetworkLog::Health &h : log.health()) {
        std::vector<qint64> l;
        qint64 lastAnswer = -1;
        for (const NetworkLog::Entry &e : log.entries())
            if (NetworkLog::isEvent(e.what) && e.satId == h.satId) {
                lastAnswer = e.timeNs;
                if (e.latencyNs >= 0)
                    l.push_back(e.latencyNs);
            }
        std::sort(l.begin(), l.end());
        const bool right = h.medianLatencyNs == (l.empty() ? -1 : l[l.size() / 2]) &&
                           h.worstLatencyNs == (l.empty() ? -1 : l.back()) &&
                           h.lastSeenNs == lastAnswer;
        out << QString::asprintf("%d: %llu %llu %llu%s", h.satId, h.requests, h.answers, h.missed,
                                 right ? "" : " wrong figures");
    }
    return out;
}

// Three satellites on the air (RS-232, enabled; the second silent), the port open,
// then steps such as "RequestConfig 2" (through a satellite object fetched anew, as
// the window does), "Configure 3 7 0 0" (new Sat ID, interface, enabled), "wait 2"
// (entries), "miss 0" (ms), "NetError 5 text".
struct Net {
    explicit Net(const QString &script) {
        sim->setAnswerDelayMs(0);
        onAir({{.satId = 1}, {.satId = 2, .answers = false}, {.satId = 3}})(*sim);
        for (const qint16 satId : {1, 2, 3, 2047})
            rec.Satellites().Add(satId);
        rec.OpenPort();
        rec.log().clear();
        const QHash<QString, void (Satellite::*)()> requests{
            {"Detect", &Satellite::Detect},
            {"RequestConfig", &Satellite::RequestConfig},
            {"RequestStatus", &Satellite::RequestStatus}};
        for (const QString &step : script.split(u';')) {
            const QStringList w = step.trimmed().split(u' ');
            const auto n = [&](int i) { return qint16(w.value(i).toInt()); };
            if (requests.contains(w[0]))
                ((*rec.Satellites().ItemById(n(1))).*requests[w[0]])();
            else if (w[0] == "wait")
                QTRY_COMPARE(rec.log().entries().size(), std::size_t(n(1)));
            else if (w[0] == "miss")
                rec.log().setMissAfterNs(n(1) * 1000000LL);
            else if (w[0] == "NetError")
                sim->raiseNetError(n(1), w.mid(2).join(u' '));
            else if (w[0] == "Configure") {
                const SatellitePtr s = rec.Satellites().ItemById(n(1));
                s->setNewSatId(n(2));
                s->setInterface(n(3));
                s->setEnabled(n(4));
                s->Configure();
            }
        }
    }
    SimulatedRadioNet *sim = new SimulatedRadioNet;
    RecordingRadioNet rec{sim};
};

} // namespace

class tst_NetworkLog : public QObject {
    Q_OBJECT

private slots:
    void records_data() {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QStringList>("log");
        QTest::addColumn<QStringList>("health");
        QTest::newRow("read-back")
            << "Detect 1; RequestConfig 1; RequestStatus 1"
            << QStringList{"t,->,1,Detect,,",          "t,->,1,RequestConfig,,",
                           "t,->,1,RequestStatus,,",   "t,<-,1,SatelliteAnswered,QX NORVALE,l",
                           "t,<-,1,ConfigReceived,,l", "t,<-,1,StatusReceived,,l"}
            << QStringList{"1: 3 3 0"};
        QTest::newRow("any satellite")
            << "Detect 2047"
            << QStringList{"t,->,2047,Detect,,", "t,<-,1,SatelliteAnswered,QX NORVALE,l"}
            << QStringList{"1: 1 1 0"};
        QTest::newRow("asked again before the answer")
            << "RequestStatus 3; RequestStatus 3; RequestConfig 2; RequestConfig 2"
            << QStringList{"t,->,3,RequestStatus,,", "t,->,3,RequestStatus,,",
                           "t,->,2,RequestConfig,,", "t,->,2,RequestConfig,,",
                           "t,<-,3,StatusReceived,,l"}
            << QStringList{"2: 1 0 0", "3: 1 1 0"};
        QTest::newRow("silent") << "miss 0; RequestConfig 2; RequestConfig 2"
                                << QStringList{"t,->,2,RequestConfig,,", "t,->,2,RequestConfig,,"}
                                << QStringList{"2: 2 0 2"};
        QTest::newRow("configure")
            << "RequestConfig 3; wait 2; Configure 3 7 0 0"
            << QStringList{"t,->,3,RequestConfig,,", "t,<-,3,ConfigReceived,,l",
                           "t,->,3,Configure,\"Sat ID 3 -> 7, RS-232 -> RS-485, enabled 1 -> 0\","}
            << QStringList{"3: 1 1 0"};
        QTest::newRow("error") << "NetError 5 Lost \"%2\", badly"
                               << QStringList{"t,<-,,NetError,\"Lost \"\"%2\"\", badly (n.5)\","}
                               << QStringList{};
    }
    void records() {
        QFETCH(QString, script);
        QFETCH(QStringList, log);
        Net n(script);
        QTRY_COMPARE(csv(n.rec.log()), log);
        QCOMPARE(n.rec.log().csv().section(u'\n', 0, 0),
                 QStringLiteral("time_ms,direction,sat_id,what,details,latency_ms"));
        QTEST(health(n.rec.log()), "health");
    }

    // The ring keeps the newest entries; a follower takes those above its last number,
    // and the window's rows hold what the ring holds.
    void ring_data() {
        QTest::addColumn<int>("capacity");
        QTest::addColumn<int>("recorded");
        QTest::addColumn<int>("after");
        QTest::addColumn<QList<quint64>>("numbers");
        QTest::newRow("room left") << 5 << 3 << 0 << QList<quint64>{1, 2, 3};
        QTest::newRow("full") << 3 << 5 << 0 << QList<quint64>{3, 4, 5};
        QTest::newRow("follower") << 5 << 4 << 2 << QList<quint64>{3, 4};
        QTest::newRow("follower, full") << 3 << 7 << 5 << QList<quint64>{6, 7};
        QTest::newRow("caught up") << 3 << 5 << 5 << QList<quint64>{};
    }
    void ring() {
        QFETCH(int, capacity);
        QFETCH(int, recorded);
        QFETCH(int, after);
        NetworkLog log(capacity);
        NetworkLogModel rows{std::size_t(capacity)}; // the window's, taking two batches
        for (int i = 1; i <= recorded; ++i) {
            log.call(NetworkLog::What::Detect, qint16(i));
            if (i == after)
                rows.take(log);
        }
        rows.take(log);
        QList<quint64> numbers;
        for (const NetworkLog::Entry &e : log.entries(quint64(after)))
            numbers << e.number;
        QTEST(numbers, "numbers");
        QCOMPARE(log.lastNumber(), quint64(recorded));
        QStringList held, shown;
        for (const NetworkLog::Entry &e : log.entries())
            held << QString::number(e.satId);
        for (int row = 0; row < rows.rowCount(); ++row)
            shown << rows.index(row, NetworkLogModel::SatId).data().toString();
        QCOMPARE(shown, held);
    }
};

QTEST_GUILESS_MAIN(tst_NetworkLog)
#include "tst_networklog.moc"
