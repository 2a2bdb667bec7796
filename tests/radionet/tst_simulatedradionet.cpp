#include "platform/RuntimeError.h"
#include "radionet/SimulatedRadioNet.h"
#include "support/TestSupport.h"

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

} // namespace

class tst_SimulatedRadioNet : public QObject {
    Q_OBJECT

private slots:
    // Every move from every state, and the only errors they raise.
    void linkStates() {
        SimulatedRadioNet net;
        Recorder rec(net);
        const auto state = [&] { return int(net.LinkState()); };
        QVERIFY(!net.StopPolling());
        QVERIFY(!net.StartPolling());
        QVERIFY(net.ClosePort()); // closing a closed port succeeds quietly
        QCOMPARE(state(), 0);
        QVERIFY(rec.events.isEmpty()); // never from inside the call
        QCOMPARE(rec.take(), QStringList{"NetError 1 Port not open"});
        QVERIFY(net.OpenPort() && net.OpenPort() && net.StopPolling());
        QCOMPARE(state(), 1);
        QVERIFY(net.StartPolling() && net.StartPolling() && net.OpenPort());
        QCOMPARE(state(), 2);
        QVERIFY(net.StopPolling() && net.StopPolling() && net.OpenPort());
        QCOMPARE(state(), 3);
        QVERIFY(net.StartPolling() && net.ClosePort());
        QCOMPARE(state(), 0);
        net.OpenPort();
        net.StartPolling();
        net.StopPolling();
        QVERIFY(net.ClosePort());
        QCOMPARE(state(), 0);
        QCOMPARE(rec.take(), QStringList{});

        // Ports are named exactly; the override hides the real state, which keeps
        // moving underneath.
        net.setCommPort(QStringLiteral("com1"));
        QVERIFY(!net.OpenPort());
        QCOMPARE(rec.take(), QStringList{"NetError 2 Port com1 not available"});
        net.setAvailablePorts({QStringLiteral("com1")});
        net.setLinkStateOverride(qint16(7));
        QVERIFY(net.OpenPort());
        QCOMPARE(state(), 7);
        net.setLinkStateOverride(std::nullopt);
        QCOMPARE(state(), 1);
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

    // A request repeated before its answer has landed rides on the one under way, so
    // a live test that asks again on every answer keeps one exchange per satellite.
    void repeatedRequestRidesOnTheOneUnderWay() {
        SimulatedRadioNet net;
        net.setAnswerDelayMs(0);
        net.OpenPort();
        Recorder rec(net);
        const SatellitePtr one = net.Satellites().Add(1);
        one->RequestStatus();
        one->RequestStatus();
        one->RequestConfig();
        QCOMPARE(rec.take(), (QStringList{"Status 1", "Config 1"}));
        one->RequestStatus();
        QCOMPARE(rec.take(), QStringList{"Status 1"});
        QCOMPARE(net.callLog().filter(QStringLiteral("RequestStatus")).size(), 3);
    }

    void listsAndTheirObjects() {
        auto net = std::make_unique<SimulatedRadioNet>();
        SatelliteList &list = net->Satellites();
        const int outOfRange = RuntimeError::SubscriptOutOfRange;
        QCOMPARE(errorNumber([&] { list.ItemById(0); }), outOfRange);
        QCOMPARE(errorNumber([&] { list.Remove(0); }), outOfRange);
        QCOMPARE(errorNumber([&] { net->Devices().Item(1); }), outOfRange);

        // Repeated ids: look-up and removal take the first.
        SatellitePtr firstThree = list.Add(3), five = list.Add(5), secondThree = list.Add(3);
        QCOMPARE(list.ItemById(3), firstThree);
        QCOMPARE(list.Item(3), secondThree);
        QCOMPARE(errorNumber([&] { list.Item(4); }), outOfRange);
        list.Remove(3);
        QCOMPARE(list.Item(1), five);
        QCOMPARE(list.ItemById(3), secondThree);

        // A satellite object outlives its list and the network, harmlessly.
        net->OpenPort();
        list.Clear();
        firstThree->RequestConfig(); // still pending when the network goes
        net.reset();
        firstThree->RequestStatus();
        QCoreApplication::processEvents();
        QCOMPARE(firstThree->RfVersionMajor(), qint16(0));
    }
};

QTEST_GUILESS_MAIN(tst_SimulatedRadioNet)
#include "tst_simulatedradionet.moc"
