#include "platform/RuntimeError.h"
#include "radionet/SimulatedRadioNet.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

// Every event of the network, in arrival order, as "Name arg arg".
struct Recorder {
    explicit Recorder(SimulatedRadioNet &net) {
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
    QStringList events;
};

// Outcomes keep the order they were posted in, so once a marker queued last has
// arrived (answer delay 0), everything the calls before it caused has arrived too.
bool settle(SimulatedRadioNet &net, Recorder &rec) {
    net.raiseStatusReceived(-1);
    if (!QTest::qWaitFor([&] { return rec.events.contains(QStringLiteral("Status -1")); }))
        return false;
    rec.events.removeAll(QStringLiteral("Status -1"));
    return true;
}

// Only the given satellite on the air, port open, answers at once.
void setUp(SimulatedRadioNet &net, const OnAirSatellite &only) {
    net.setAnswerDelayMs(0);
    net.clearAir();
    net.putOnAir(only);
    net.OpenPort();
}

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
        QTest::addColumn<int>("from");
        QTest::addColumn<QString>("operation");
        QTest::addColumn<bool>("result");
        QTest::addColumn<int>("to");
        QTest::addColumn<QStringList>("events");
        const QStringList none, portClosed{QStringLiteral("NetError 1 Port not open")};
        const QStringList ops{"OpenPort", "ClosePort", "StartPolling", "StopPolling"};
        // Per operation, from states 0..3: the result and the state after it.
        const bool results[4][4] = {{1, 1, 1, 1}, {1, 1, 1, 1}, {0, 1, 1, 1}, {0, 1, 1, 1}};
        const int states[4][4] = {{1, 1, 2, 3}, {0, 0, 0, 0}, {0, 2, 2, 2}, {0, 1, 3, 3}};
        for (int op = 0; op < 4; ++op)
            for (int from = 0; from < 4; ++from)
                QTest::addRow("%s from %d", qPrintable(ops[op]), from)
                    << from << ops[op] << results[op][from] << states[op][from]
                    << (op == 2 && from == 0 ? portClosed : none);
    }
    void linkTransitions() {
        QFETCH(int, from);
        QFETCH(QString, operation);
        QFETCH(bool, result);
        QFETCH(int, to);
        QFETCH(QStringList, events);
        SimulatedRadioNet net;
        if (from >= 1)
            net.OpenPort();
        if (from >= 2)
            net.StartPolling();
        if (from == 3)
            net.StopPolling();
        QCOMPARE(net.LinkState(), qint16(from));

        Recorder rec(net);
        const bool got = operation == "OpenPort"       ? net.OpenPort()
                         : operation == "ClosePort"    ? net.ClosePort()
                         : operation == "StartPolling" ? net.StartPolling()
                                                       : net.StopPolling();
        QCOMPARE(got, result);
        QCOMPARE(net.LinkState(), qint16(to));
        QVERIFY(rec.events.isEmpty()); // never from inside the call
        QVERIFY(settle(net, rec));
        QCOMPARE(rec.events, events);
    }

    void portAvailabilityAndOverride() {
        SimulatedRadioNet net;
        Recorder rec(net);
        net.setCommPort(QStringLiteral("COM9"));
        QVERIFY(!net.OpenPort());
        net.setCommPort(QStringLiteral("com1")); // names compare exactly
        QVERIFY(!net.OpenPort());
        QCOMPARE(net.LinkState(), qint16(0));
        QVERIFY(rec.events.isEmpty());
        QVERIFY(settle(net, rec));
        QCOMPARE(rec.events, (QStringList{"NetError 2 Port COM9 not available",
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

    void callLog() {
        SimulatedRadioNet net;
        net.setBaudRate(QStringLiteral("9600")); // property access is not logged
        net.OpenPort();
        net.StartPolling();
        net.StopPolling();
        bool send = false;
        qint16 notify = 3, goingOn = 20;
        net.SetNotification(send, notify, goingOn);
        net.GetNotification(send, notify, goingOn);
        SatellitePtr sat = net.Satellites().Add(2);
        net.Satellites().Add(4);
        (void)net.Satellites().Item(1);
        (void)net.Satellites().ItemById(4);
        sat->Detect();
        sat->RequestConfig();
        sat->RequestStatus();
        sat->setSatId(12); // entries name the id of the moment of the call
        sat->setNewSatId(13);
        sat->Configure();
        net.Satellites().Remove(4);
        net.Satellites().Clear();
        net.Devices().Add(100);
        (void)net.Devices().Item(1);
        net.Devices().Clear();
        net.ClosePort();
        QCOMPARE(net.callLog(),
                 (QStringList{"OpenPort", "StartPolling", "StopPolling",
                              "SetNotification false 3 20", "GetNotification", "Satellites.Add 2",
                              "Satellites.Add 4", "Detect 2", "RequestConfig 2", "RequestStatus 2",
                              "Configure 12 13", "Satellites.Remove 4", "Satellites.Clear",
                              "Devices.Add 100", "Devices.Clear", "ClosePort"}));
        QCOMPARE(send, false);
        QCOMPARE(goingOn, qint16(20));
        net.clearCallLog();
        QVERIFY(net.callLog().isEmpty());
    }

    void configAndStatusArriveFilledIn() {
        SimulatedRadioNet net;
        setUp(net, {.satId = 5,
                    .interfaceCode = 0,
                    .enabled = 0,
                    .rfVersionMajor = 1,
                    .rfVersionMinor = 10,
                    .rxFree = 12,
                    .txFree = 13});
        SatellitePtr sat = net.Satellites().Add(5);
        sat->setInterface(1);
        // What a handler reads inside the event.
        QStringList seen;
        connect(&net, &RadioNetControl::ConfigReceived, &net, [&](qint16 id) {
            seen << QStringLiteral("%1 %2 %3 %4.%5")
                        .arg(id)
                        .arg(sat->Interface())
                        .arg(sat->Enabled())
                        .arg(sat->RfVersionMajor())
                        .arg(sat->RfVersionMinor());
        });
        connect(&net, &RadioNetControl::StatusReceived, &net, [&](qint16 id) {
            seen << QStringLiteral("%1 %2 %3").arg(id).arg(sat->RxFree()).arg(sat->TxFree());
        });
        sat->RequestConfig();
        sat->RequestStatus();
        sat->RequestStatus(); // a scenario satellite reports exactly its figures, every time
        QCOMPARE(sat->Interface(), qint16(1));
        QTRY_COMPARE(seen, (QStringList{"5 0 0 1.10", "5 12 13", "5 12 13"}));
    }

    void whoAnswers() {
        SimulatedRadioNet net;
        net.setAnswerDelayMs(0);
        Recorder rec(net);
        SatellitePtr any = net.Satellites().Add(SimulatedRadioNet::BroadcastSatId);
        any->Detect(); // port closed
        QVERIFY(settle(net, rec));
        QCOMPARE(rec.events, QStringList{"NetError 1 Port not open"});

        setUp(net, {.satId = 4, .answers = false});
        net.putOnAir({.satId = 9, .identity = QStringLiteral("QX NINE")});
        net.putOnAir({.satId = 11, .identity = QStringLiteral("QX ELEVEN")});
        rec.events.clear();
        any->Detect(); // the silent 4 is first on the air but keeps quiet
        net.Satellites().Add(11)->Detect();
        QVERIFY(settle(net, rec));
        QCOMPARE(rec.events, (QStringList{"Answered 9 QX NINE", "Answered 11 QX ELEVEN"}));
        QCOMPARE(any->SatId(), SimulatedRadioNet::BroadcastSatId);

        // Silent and absent satellites: no event at all, whatever the request.
        rec.events.clear();
        for (qint16 id : {4, 77}) {
            SatellitePtr sat = net.Satellites().Add(id);
            sat->Detect();
            sat->RequestConfig();
            sat->RequestStatus();
            sat->setNewSatId(30);
            sat->Configure();
        }
        net.removeFromAir(9);
        net.removeFromAir(11);
        any->Detect();
        QVERIFY(settle(net, rec));
        QCOMPARE(rec.events, QStringList{});
        QVERIFY(!net.onAir(30).has_value());
    }

    void injectedErrorFailsOneRequest() {
        SimulatedRadioNet net;
        setUp(net, {.satId = 6});
        Recorder rec(net);
        SatellitePtr sat = net.Satellites().Add(6);
        net.injectNetError(5, QStringLiteral("Bad CRC"));
        sat->RequestStatus();
        sat->RequestStatus();
        net.injectNetError(3, QStringLiteral("Timeout"));
        sat->setNewSatId(8);
        sat->Configure(); // fails: the satellite keeps its id
        QVERIFY(settle(net, rec));
        QCOMPARE(rec.events, (QStringList{"NetError 5 Bad CRC", "Status 6", "NetError 3 Timeout"}));
        QVERIFY(net.onAir(6).has_value());
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
        net.raiseStatusReceived(7);
        QVERIFY(rec.events.isEmpty());
        QTRY_COMPARE(rec.events.size(), 7);
        QCOMPARE(rec.events,
                 (QStringList{"NetError 9 Noise", "Answered 7 QX SEVEN", "Config 7", "Status 7",
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

        SatellitePtr firstThree = list.Add(3), five = list.Add(5), secondThree = list.Add(3);
        QCOMPARE(list.ItemById(3), firstThree);
        QCOMPARE(list.Item(3), secondThree);
        QCOMPARE(errorNumber([&] { list.Item(0); }), outOfRange);
        QCOMPARE(errorNumber([&] { list.Item(4); }), outOfRange);
        list.Remove(3);
        QCOMPARE(list.Count(), 2);
        QCOMPARE(list.Item(1), five);
        QCOMPARE(list.ItemById(3), secondThree);

        net.Devices().Add(100);
        DeclaredTerminalPtr terminal = net.Devices().Add(250);
        QCOMPARE(net.Devices().Item(2), terminal);
        QCOMPARE(errorNumber([&] { net.Devices().Item(3); }), outOfRange);
        net.Devices().Clear();
        QCOMPARE(terminal->Number(), qint16(250));

        // A dropped satellite object keeps working for whoever holds it.
        setUp(net, {.satId = 3, .rfVersionMajor = 4});
        list.Clear();
        QCOMPARE(list.Count(), 0);
        QSignalSpy configs(&net, &RadioNetControl::ConfigReceived);
        firstThree->RequestConfig();
        QTRY_COMPARE(configs.count(), 1);
        QCOMPARE(firstThree->RfVersionMajor(), qint16(4));
        QVERIFY(net.callLog().endsWith("RequestConfig 3"));
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

    void configureRenamesTheSatellite() {
        SimulatedRadioNet net;
        setUp(net, {.satId = 2, .identity = QStringLiteral("QX TWO")});
        Recorder rec(net);
        SatellitePtr sat = net.Satellites().Add(2);
        sat->setNewSatId(12);
        sat->setInterface(0);
        sat->setEnabled(0);
        sat->Configure();
        // The message is on its way under the old address; the object moves on at once.
        sat->setSatId(12);
        QVERIFY(net.onAir(2).has_value());
        sat->Detect();
        QVERIFY(settle(net, rec));
        QCOMPARE(rec.events, QStringList{"Answered 12 QX TWO"});
        QVERIFY(!net.onAir(2).has_value());
        QCOMPARE(net.onAir(12)->interfaceCode, qint16(0));
        QCOMPARE(net.onAir(12)->enabled, qint32(0));
    }

    void demoAir() {
        SimulatedRadioNet net;
        QSet<QString> versions;
        QSet<qint16> interfaces;
        for (qint16 id = 1; id <= 3; ++id) {
            QVERIFY(net.onAir(id)->identity.startsWith(QStringLiteral("QX")));
            QVERIFY(net.onAir(id)->answers);
            versions << QStringLiteral("%1.%2")
                            .arg(net.onAir(id)->rfVersionMajor)
                            .arg(net.onAir(id)->rfVersionMinor);
            interfaces << qint16(net.onAir(id)->interfaceCode == 1);
        }
        QCOMPARE(versions.size(), 3);
        QCOMPARE(interfaces.size(), 2);

        // A demo satellite's free memory wanders within 2 KB of its base, the same way in
        // every simulator; a scenario satellite put in its place stays put.
        const auto figures = [](SimulatedRadioNet &n) {
            n.setAnswerDelayMs(0);
            n.OpenPort();
            SatellitePtr sat = n.Satellites().Add(1);
            QSignalSpy statuses(&n, &RadioNetControl::StatusReceived);
            QList<QPair<qint16, qint16>> seen;
            for (int i = 0; i < 8; ++i) {
                sat->RequestStatus();
                if (!statuses.wait(5000))
                    break;
                seen.append({sat->RxFree(), sat->TxFree()});
            }
            return seen;
        };
        const OnAirSatellite base = *net.onAir(1);
        const auto drifting = figures(net);
        QCOMPARE(drifting.size(), 8);
        QSet<qint16> distinctRx;
        for (const auto &[rx, tx] : drifting) {
            QVERIFY(qAbs(rx - base.rxFree) <= 2 && qAbs(tx - base.txFree) <= 2);
            distinctRx << rx;
        }
        QVERIFY(distinctRx.size() > 1);
        SimulatedRadioNet again;
        QCOMPARE(figures(again), drifting);

        SimulatedRadioNet replaced;
        replaced.putOnAir(base);
        const QList<QPair<qint16, qint16>> steady(8, {base.rxFree, base.txFree});
        QCOMPARE(figures(replaced), steady);
    }
};

QTEST_GUILESS_MAIN(tst_SimulatedRadioNet)
#include "tst_simulatedradionet.moc"
