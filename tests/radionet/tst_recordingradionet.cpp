#include "radionet/RecordingRadioNet.h"
#include "radionet/SimulatedRadioNet.h"
#include "support/NetSupport.h"

#include <QtTest>

// The recorder's satellite objects: one per satellite for as long as it lives, so that
// what a satellite reported is known when it is configured, however the window
// fetches it; forgotten once the satellite is gone from the list and from every hand.
class tst_RecordingRadioNet : public QObject {
    Q_OBJECT

    SimulatedRadioNet *sim_ = nullptr;
    std::unique_ptr<RecordingRadioNet> rec_;

private slots:
    void init() {
        sim_ = new SimulatedRadioNet;
        sim_->setAnswerDelayMs(0);
        net_support::setAir(*sim_, {{.satId = 3, .interfaceCode = 1, .enabled = 1}});
        rec_ = std::make_unique<RecordingRadioNet>(sim_);
        rec_->Satellites().Add(3);
        rec_->OpenPort();
    }

    void configureAfterRead_data() {
        QTest::addColumn<bool>("held");  // the object kept from the read to the Configure
        QTest::addColumn<int>("others"); // satellites added in between
        QTest::newRow("held") << true << 0;
        QTest::newRow("fetched anew") << false << 0;
        QTest::newRow("fetched anew, many added") << false << 70;
    }
    void configureAfterRead() {
        QFETCH(bool, held);
        QFETCH(int, others);
        QSignalSpy read(rec_.get(), &RadioNetControl::ConfigReceived);
        SatellitePtr kept = rec_->Satellites().ItemById(3);
        kept->RequestConfig();
        if (!held)
            kept.reset();
        QVERIFY(read.wait());
        for (int id = 100; id < 100 + others; ++id)
            rec_->Satellites().Add(qint16(id));
        const SatellitePtr satellite = rec_->Satellites().ItemById(3);
        satellite->setNewSatId(7);
        satellite->setInterface(0);
        satellite->setEnabled(0);
        satellite->Configure();
        QCOMPARE(NetworkLog::describe(rec_->log().entries().back()),
                 "Sat ID 3 -> 7, RS-232 -> RS-485, enabled 1 -> 0");
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
        QVERIFY(net_support::settle(*sim_));
        for (int id = 100; id < 100 + added; ++id)
            rec_->Satellites().Add(qint16(id));
        QCOMPARE(rec_->Satellites().Item(1)->SatId(), 100);
        QTEST(raw.expired(), "forgotten");
    }
};

QTEST_GUILESS_MAIN(tst_RecordingRadioNet)
#include "tst_recordingradionet.moc"
