#pragma once

#include "commissioning/NetSession.h"

#include <functional>
#include <optional>
#include <vector>

// Told before each satellite is asked: its place in the run and its Sat ID.
using Progress = std::function<void(int step, int steps, qint16 satId)>;

// A satellite as the configuration file describes it.
struct FileSatellite {
    int position; // 1-based, in the list as the reader filled it
    qint16 satId;
    qint16 interfaceCode;
    qint32 enabled;
};

// The satellites a configuration file put into a network's list.
std::vector<FileSatellite> fileSatellites(RadioNetControl &net);

// "RS-232" for code 1, "RS-485" for any other, as the window shows them.
QString interfaceName(qint16 code);

// Asks one satellite at a time and waits for its answer.
class SatelliteProbe {
public:
    struct Config {
        qint16 interfaceCode;
        qint32 enabled;
        qint16 rfVersionMajor, rfVersionMinor;
    };
    struct Status {
        qint16 rxFree, txFree;
    };

    explicit SatelliteProbe(NetSession &session)
        : session_(session) {}

    // Who answers a Detect to satId (2047: the first satellite that hears it).
    std::optional<NetSession::Heard> detect(qint16 satId);
    std::optional<Config> readConfig(qint16 satId);
    std::optional<Status> readStatus(qint16 satId);
    // Sends the new Sat ID, interface and enabled flag to satId; nothing answers.
    void configure(qint16 satId, qint16 newSatId, const Config &settings);

private:
    // The list's satellite of that Sat ID, added when the list has none.
    SatellitePtr satellite(qint16 satId);
    bool answered(NetworkLog::What what, qint16 satId);

    NetSession &session_;
};
