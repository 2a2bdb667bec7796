#include "radionet/RecordingRadioNet.h"

using What = NetworkLog::What;

// A satellite object of the network, whose requests are recorded on their way.
class RecordingSatellite : public Satellite {
public:
    // recording: the network's switch, read at every request.
    RecordingSatellite(SatellitePtr satellite, NetworkLog &log, const bool &recording)
        : satellite_(std::move(satellite))
        , log_(log)
        , recording_(recording) {}

    qint16 SatId() const override { return satellite_->SatId(); }
    void setSatId(qint16 satId) override { satellite_->setSatId(satId); }
    qint32 Enabled() const override { return satellite_->Enabled(); }
    void setEnabled(qint16 enabled) override { satellite_->setEnabled(enabled); }
    qint16 RfVersionMajor() const override { return satellite_->RfVersionMajor(); }
    qint16 RfVersionMinor() const override { return satellite_->RfVersionMinor(); }
    qint16 Interface() const override { return satellite_->Interface(); }
    void setInterface(qint16 code) override { satellite_->setInterface(code); }
    qint16 RxFree() const override { return satellite_->RxFree(); }
    qint16 TxFree() const override { return satellite_->TxFree(); }
    void setNewSatId(qint16 newSatId) override {
        newSatId_ = newSatId;
        satellite_->setNewSatId(newSatId);
    }

    void Detect() override {
        noteRequest(What::Detect);
        satellite_->Detect();
    }
    void RequestConfig() override {
        noteRequest(What::RequestConfig);
        satellite_->RequestConfig();
    }
    void RequestStatus() override {
        noteRequest(What::RequestStatus);
        satellite_->RequestStatus();
    }
    void Configure() override {
        // Old: what the satellite said of itself last; new: what is sent now.
        if (recording_)
            log_.configure(SatId(), newSatId_, readInterface_, Interface(), readEnabled_,
                           Enabled());
        satellite_->Configure();
    }

    // Only the wrapper holds its satellite: the list has dropped it, nobody else has it.
    bool orphan() const { return satellite_.use_count() == 1; }

    // Its configuration as the satellite last reported it.
    void configRead() {
        readInterface_ = satellite_->Interface();
        readEnabled_ = satellite_->Enabled();
    }

private:
    void noteRequest(What what) {
        if (recording_)
            log_.call(what, SatId());
    }

    SatellitePtr satellite_;
    NetworkLog &log_;
    const bool &recording_;
    qint16 newSatId_ = 0;
    qint16 readInterface_ = 0;
    qint32 readEnabled_ = 0;
};

class RecordingSatelliteList : public SatelliteList {
public:
    explicit RecordingSatelliteList(RecordingRadioNet &net)
        : net_(net) {}

    SatellitePtr Item(qint16 position) const override { return net_.item(position); }
    SatellitePtr Add(qint16 satId) override { return net_.wrap(list().Add(satId)); }
    void Remove(qint16 satId) override { list().Remove(satId); }
    qint32 Count() const override { return list().Count(); }
    SatellitePtr ItemById(qint16 satId) const override { return net_.wrap(list().ItemById(satId)); }
    void Clear() override { list().Clear(); }

private:
    SatelliteList &list() const { return net_.network_->Satellites(); }

    RecordingRadioNet &net_;
};

RecordingRadioNet::RecordingRadioNet(RadioNetControl *network, QObject *parent)
    : RadioNetControl(parent)
    , network_(network)
    , satellites_(std::make_unique<RecordingSatelliteList>(*this)) {
    network_->setParent(this);
    connect(network_, &RadioNetControl::NetError, this, [this](qint16 errNum, const QString &text) {
        if (recording_)
            log_.event(What::NetError, NetworkLog::NoSatellite, errNum, text);
        emit NetError(errNum, text);
    });
    connect(network_, &RadioNetControl::SatelliteAnswered, this,
            [this](qint16 satId, const QString &identity) {
                if (recording_)
                    log_.event(What::SatelliteAnswered, satId, 0, identity);
                emit SatelliteAnswered(satId, identity);
            });
    connect(network_, &RadioNetControl::ConfigReceived, this, [this](qint16 satId) {
        if (!recording_)
            return emit ConfigReceived(satId);
        log_.event(What::ConfigReceived, satId);
        // The configuration read is the "old" side of a later Configure.
        for (auto &[raw, wrapper] : wrappers_)
            if (wrapper->SatId() == satId)
                wrapper->configRead();
        emit ConfigReceived(satId);
    });
    connect(network_, &RadioNetControl::StatusReceived, this, [this](qint16 satId) {
        if (recording_)
            log_.event(What::StatusReceived, satId);
        emit StatusReceived(satId);
    });
}

RecordingRadioNet::~RecordingRadioNet() {
    network_->disconnect(this);
}

SatelliteList &RecordingRadioNet::Satellites() {
    return recording_ ? *satellites_ : network_->Satellites();
}

const RecordingRadioNet::Wrappers::value_type &
RecordingRadioNet::wrapped(const SatellitePtr &satellite) {
    const auto it = wrappers_.find(satellite.get());
    if (it != wrappers_.end())
        return *it;
    // Forget the wrappers of satellites gone from the list, and from every hand, before
    // the map grows.
    if (wrappers_.size() > 64) {
        std::erase_if(wrappers_, [](const auto &entry) {
            return entry.second.use_count() == 1 && entry.second->orphan();
        });
        byPosition_.clear();
    }
    return *wrappers_
                .emplace(satellite.get(),
                         std::make_shared<RecordingSatellite>(satellite, log_, recording_))
                .first;
}

SatellitePtr RecordingRadioNet::wrap(const SatellitePtr &satellite) {
    return wrapped(satellite).second;
}

SatellitePtr RecordingRadioNet::item(qint16 position) {
    SatellitePtr satellite = network_->Satellites().Item(position); // a bad position throws
    const auto at = std::size_t(position - 1);
    if (at < byPosition_.size() && byPosition_[at] && byPosition_[at]->first == satellite.get())
        return byPosition_[at]->second;
    const Wrappers::value_type &entry = wrapped(satellite);
    if (at >= byPosition_.size())
        byPosition_.resize(at + 1);
    byPosition_[at] = &entry;
    return entry.second;
}

bool RecordingRadioNet::noted(NetworkLog::What what, bool done) {
    if (recording_)
        log_.call(what, NetworkLog::NoSatellite, done);
    return done;
}
