#include "commissioning/SatelliteProbe.h"

#include "radionet/Air.h"

std::vector<FileSatellite> fileSatellites(RadioNetControl &net) {
    std::vector<FileSatellite> satellites;
    SatelliteList &list = net.Satellites();
    for (qint16 position = 1; position <= list.Count(); ++position) {
        const SatellitePtr s = list.Item(position);
        satellites.push_back({position, s->SatId(), s->Interface(), s->Enabled()});
    }
    return satellites;
}

QString interfaceName(qint16 code) {
    return code == 1 ? QStringLiteral("RS-232") : QStringLiteral("RS-485");
}

SatellitePtr SatelliteProbe::satellite(qint16 satId) {
    SatelliteList &list = session_.net().Satellites();
    for (qint16 position = 1; position <= list.Count(); ++position) {
        if (SatellitePtr s = list.Item(position); s->SatId() == satId)
            return s;
    }
    return list.Add(satId);
}

bool SatelliteProbe::answered(NetworkLog::What what, qint16 satId) {
    return session_
        .await([&](const NetSession::Heard &h) { return h.what == what && h.satId == satId; })
        .has_value();
}

std::optional<NetSession::Heard> SatelliteProbe::detect(qint16 satId) {
    satellite(satId)->Detect();
    const bool anyone = satId == Air::AnySatellite;
    return session_.await([&](const NetSession::Heard &h) {
        return h.what == NetworkLog::What::SatelliteAnswered && (anyone || h.satId == satId);
    });
}

std::optional<SatelliteProbe::Config> SatelliteProbe::readConfig(qint16 satId) {
    const SatellitePtr s = satellite(satId);
    s->RequestConfig();
    if (!answered(NetworkLog::What::ConfigReceived, satId))
        return std::nullopt;
    return Config{s->Interface(), s->Enabled(), s->RfVersionMajor(), s->RfVersionMinor()};
}

std::optional<SatelliteProbe::Status> SatelliteProbe::readStatus(qint16 satId) {
    const SatellitePtr s = satellite(satId);
    s->RequestStatus();
    if (!answered(NetworkLog::What::StatusReceived, satId))
        return std::nullopt;
    return Status{s->RxFree(), s->TxFree()};
}

void SatelliteProbe::configure(qint16 satId, qint16 newSatId, const Config &settings) {
    const SatellitePtr s = satellite(satId);
    s->setInterface(settings.interfaceCode);
    s->setEnabled(qint16(settings.enabled != 0));
    s->setNewSatId(newSatId);
    s->Configure();
}
