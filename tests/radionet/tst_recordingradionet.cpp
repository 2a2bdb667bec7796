#include "radionet/RecordingRadioNet.h"
#include "radionet/SimulatedRadioNet.h"
#include "support/MainHarness.h"

#include <QtTest>

// The recorder's satellite objects as the window fetches them, by position on every
// answer of a live test: each satellite's own, kept for as long as it lives and
// forgotten once it is gone from the list and from every hand.
class tst_RecordingRadioNet : public QObject {
    Q_OBJECT

    SimulatedRadioNet *sim_ = nullptr;
    std::unique_ptr<RecordingRadioNet> rec_;

private slots:
    void init() {
        sim_ = new SimulatedRadioNet;
        sim_->setAnswerDelayMs(0);
        onAir({{.satId = 3, .interfaceCode = 1, .enabled = 1}})(*sim_);
        rec_ = std::make_unique<RecordingRadioNet>(sim_);
        rec_->Satellites().Add(3);
        rec_->OpenPort();
    }

    // What a satellite reported still reaches its Configure after the wrappers have
    // grown past their bound: a wrapper is forgotten only with its satellite.
    void configureAfterManyAdded() {
        QSignalSpy read(rec_.get(), &RadioNetControl::ConfigReceived);
        rec_->Satellites().ItemById(3)->RequestConfig();
        QVERIFY(read.wait());
        for (int id = 100; id < 170; ++id)
            rec_->Satellites().Add(qint16(id));
        const SatellitePtr satellite = rec_->Satellites().ItemById(3);
        satellite->setNewSatId(7);
        satellite->setInterface(0);
        satellite->setEnabled(0);
        satellite->Configure();
        QCOMPARE(NetworkLog::describe(rec_->log().entries().back()),
                 "Sat ID 3 -> 7, RS-232 -> RS-485, enabled 1 -> 0");
    }

    // Switched off, nothing is recorded, also through a satellite fetched before.
    void off() {
        const SatellitePtr fetched = rec_->Satellites().Item(1);
        const quint64 before = rec_->log().lastNumber();
        rec_->setRecording(false);
        fetched->RequestStatus();
        QVERIFY(settleNetwork(*sim_));
        QCOMPARE(rec_->log().lastNumber(), before);
        QCOMPARE(sim_->callLog().last(), "RequestStatus 3"); // and the call went on
    }

    // Another satellite at a position: fetched as itself. The one gone is forgotten
    // once it is held by no one and the wrappers grow past their bound.
    void replaced_data() {
        QTest::addColumn<int>("added");
        QTest::addColumn<bool>("forgotten");
        QTest::newRow("one added") << 1 << false;
        QTest::newRow("many added") << 70 << true;
    }
    void replaced() {
        QFETCH(int, added);
        const std::weak_ptr<Satellite> raw = sim_->Satellites().Item(1);
        rec_->Satellites().Item(1)->RequestStatus();
        rec_->Satellites().Remove(3);
        QVERIFY(settleNetwork(*sim_));
        for (int id = 100; id < 100 + added; ++id)
            rec_->Satellites().Add(qint16(id));
        QCOMPARE(rec_->Satellites().Item(1)->SatId(), 100);
        QTEST(raw.expired(), "forgotten");
    }
};

QTEST_GUILESS_MAIN(tst_RecordingRadioNet)
#include "tst_recordingradionet.moc"
