#include "platform/RuntimeError.h"
#include "radionet/SimulatedRadioNet.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

// Every event of the network, in arrival order, as "Name arg arg".
struct Recorder {
    explicit Recorder(SimulatedRadioNet &net)
        : net(net) {
        QObject::connect(&net, &RadioNetControl::NetError, &net, [this](qint16 n, QString d) {
            events << QStringLiteral("NetError %1 %2").arg(n).arg(d);
        });
        QObject::connect(&net, &RadioNetControl::SatelliteAnswered, &net,
                         [this](qint16 id, QString identity) {
                             events << QStringLiteral("Answered %1 %2").arg(id).arg(identity);
                         });
        QObject::connect(&net, &RadioNetControl::ConfigReceived, &net,
                         [this](qint16 id) { events << QStringLiteral("Config %1").arg(id); });
        QObject::connect(&net, &RadioNetControl::StatusReceived, &net,
                         [this](qint16 id) { events << QStringLiteral("Status %1").arg(id); });
    }
    // The events so far, taken. Outcomes keep the order they were posted in, so once
    // a marker queued last has arrived (answer delay 0), everything before it has.
    QStringList take() {
        net.raiseStatusReceived(-1);
        if (!QTest::qWaitFor([&] { return events.contains(QStringLiteral("Status -1")); }))
            return {QStringLiteral("time-out")};
        events.removeAll(QStringLiteral("Status -1"));
        return std::exchange(events, {});
    }
    SimulatedRadioNet &net;
    QStringList events;
};

const char *const Operations[] = {"OpenPort", "ClosePort", "StartPolling", "StopPolling"};

int errorNumber(const std::function<void()> &call) {
    try {
        call();
    } catch (const RuntimeError &e) {
        return e.number();
    }
    return 0;
}

} // namespace

class tst_SimulatedRadioNet : public QObject {
    Q_OBJECT

private slots:
    void linkTransitions_data() {
        QTest::addColumn<int>("operation");
        QTest::addColumn<int>("from");
        for (int op = 0; op < 4; ++op)
            for (int from = 0; from < 4; ++from)
                QTest::addRow("%s from %d", Operations[op], from) << op << from;
    }
    void linkTransitions() {
        QFETCH(int, operation);
        QFETCH(int, from);
        // Per operation, from states 0..3: the result and the state after it.
        const bool results[4][4] = {{1, 1, 1, 1}, {1, 1, 1, 1}, {0, 1, 1, 1}, {0, 1, 1, 1}};
        const int states[4][4] = {{1, 1, 2, 3}, {0, 0, 0, 0}, {0, 2, 2, 2}, {0, 1, 3, 3}};
        SimulatedRadioNet net;
        if (from >= 1)
            net.OpenPort();
        if (from >= 2)
            net.StartPolling();
        if (from == 3)
            net.StopPolling();
        QCOMPARE(net.LinkState(), qint16(from));

        Recorder rec(net);
        const bool got = operation == 0   ? net.OpenPort()
                         : operation == 1 ? net.ClosePort()
                         : operation == 2 ? net.StartPolling()
                                          : net.StopPolling();
        QCOMPARE(got, results[operation][from]);
        QCOMPARE(net.LinkState(), qint16(states[operation][from]));
        QVERIFY(rec.events.isEmpty()); // never from inside the call
        QCOMPARE(rec.take(), operation == 2 && from == 0 ? QStringList{"NetError 1 Port not open"}
                                                         : QStringList{});
    }

    void portAvailabilityAndOverride() {
        SimulatedRadioNet net;
        Recorder rec(net);
        net.setCommPort(QStringLiteral("COM9"));
        QVERIFY(!net.OpenPort());
        net.setCommPort(QStringLiteral("com1")); // names compare exactly
        QVERIFY(!net.OpenPort());
        QCOMPARE(net.LinkState(), qint16(0));
        QCOMPARE(rec.take(), (QStringList{"NetError 2 Port COM9 not available",
                                          "NetError 2 Port com1 not available"}));
        net.setAvailablePorts({QStringLiteral("com1")});
        QVERIFY(net.OpenPort());
        // The override hides the real state, which keeps moving underneath.
        net.setLinkStateOverride(qint16(7));
        QVERIFY(net.StartPolling());
        QCOMPARE(net.LinkState(), qint16(7));
        net.setLinkStateOverride(std::nullopt);
        QCOMPARE(net.LinkState(), qint16(2));
    }

    void whoAnswers() {
        SimulatedRadioNet net;
        net.setAnswerDelayMs(0);
        Recorder rec(net);
        SatellitePtr any = net.Satellites().Add(SimulatedRadioNet::BroadcastSatId);
        any->RequestStatus(); // port closed
        QCOMPARE(rec.take(), QStringList{"NetError 1 Port not open"});

        // Silent and absent satellites: no event at all, whatever the request.
        net.clearAir();
        net.putOnAir({.satId = 4, .answers = false});
        net.OpenPort();
        for (qint16 id : {4, 77}) {
            SatellitePtr sat = net.Satellites().Add(id);
            sat->Detect();
            sat->RequestConfig();
            sat->RequestStatus();
            sat->setNewSatId(30);
            sat->Configure();
        }
        any->Detect();
        QCOMPARE(rec.take(), QStringList{});
        QVERIFY(!net.onAir(30).has_value());
    }

    void eventsComeLaterInCallOrder() {
        SimulatedRadioNet net; // the demo air and the default radio delay
        net.OpenPort();
        Recorder rec(net);
        net.Satellites().Add(3)->RequestStatus();
        net.Satellites().Add(1)->Detect();
        net.Satellites().Add(2)->RequestConfig();
        // Raised events skip the radio delay but still go through the event loop.
        net.raiseNetError(9, QStringLiteral("Noise"));
        net.raiseSatelliteAnswered(7, QStringLiteral("QX SEVEN"));
        net.raiseConfigReceived(7);
        QVERIFY(rec.events.isEmpty());
        QTRY_COMPARE(rec.events.size(), 6);
        QCOMPARE(rec.events, (QStringList{"NetError 9 Noise", "Answered 7 QX SEVEN", "Config 7",
                                          "Status 3", "Answered 1 QX NORVALE 1", "Config 2"}));
    }

    void listsAndTheirObjects() {
        SimulatedRadioNet net;
        SatelliteList &list = net.Satellites();
        const int outOfRange = RuntimeError::SubscriptOutOfRange;
        QCOMPARE(errorNumber([&] { list.Item(1); }), outOfRange);
        QCOMPARE(errorNumber([&] { list.ItemById(0); }), outOfRange);
        QCOMPARE(errorNumber([&] { list.Remove(0); }), outOfRange);
        QCOMPARE(errorNumber([&] { net.Devices().Item(1); }), outOfRange);

        // Repeated ids: look-up and removal take the first.
        SatellitePtr firstThree = list.Add(3), five = list.Add(5), secondThree = list.Add(3);
        QCOMPARE(list.ItemById(3), firstThree);
        QCOMPARE(list.Item(3), secondThree);
        QCOMPARE(errorNumber([&] { list.Item(0); }), outOfRange);
        QCOMPARE(errorNumber([&] { list.Item(4); }), outOfRange);
        list.Remove(3);
        QCOMPARE(list.Count(), 2);
        QCOMPARE(list.Item(1), five);
        QCOMPARE(list.ItemById(3), secondThree);

        // A dropped satellite object keeps working for whoever holds it.
        net.putOnAir({.satId = 3, .rfVersionMajor = 4});
        net.OpenPort();
        list.Clear();
        QSignalSpy configs(&net, &RadioNetControl::ConfigReceived);
        firstThree->RequestConfig();
        QTRY_COMPARE(configs.count(), 1);
        QCOMPARE(firstThree->RfVersionMajor(), qint16(4));
    }

    void objectsOutliveTheNetwork() {
        SatellitePtr sat;
        {
            SimulatedRadioNet net;
            net.OpenPort();
            sat = net.Satellites().Add(1);
            sat->RequestConfig(); // still pending when the network goes
        }
        sat->RequestStatus(); // goes nowhere, harmlessly
        QCoreApplication::processEvents();
        QCOMPARE(sat->RfVersionMajor(), qint16(0));
    }
};

QTEST_GUILESS_MAIN(tst_SimulatedRadioNet)
#include "tst_simulatedradionet.moc"
