#pragma once

#include "platform/OwnTexts.h"
#include "radionet/NetworkChoice.h"
#include "radionet/RecordingRadioNet.h"

#include <QString>
#include <algorithm>
#include <functional>
#include <memory>
#include <optional>

// What is asked of the link; a value not given keeps what the configuration file
// read into the network says, or the network's own default.
struct LinkOptions {
    NetworkChoice choice;
    std::optional<QString> port;
    std::optional<QString> baudRate;
    std::optional<qint16> timeOutMs;
};

// True for a NetError that says the link itself failed (the port, the line), not
// that one request went unanswered.
bool isLinkFailure(NetworkChoice::Link link, qint16 errNum);

// One network for one commissioning run: the network behind the recorder, and the
// waits for its answers, each on a nested event loop with a deadline.
class NetSession {
public:
    struct Heard {
        NetworkLog::What what; // SatelliteAnswered, ConfigReceived or StatusReceived
        qint16 satId;
        QString identity;
    };

    // Owns network.
    NetSession(RadioNetControl *network, NetworkChoice::Link link);

    // The network of the choice, its NetError texts in language; a scenario that
    // cannot be read gives nothing, and why in problem.
    static std::unique_ptr<NetSession> make(const NetworkChoice &choice,
                                            OwnTexts::Language language, QString &problem);

    RecordingRadioNet &net() { return net_; }
    NetworkChoice::Link link() const { return link_; }
    void apply(const LinkOptions &options);

    // Opens the port; false when it failed, linkFailure() says why.
    bool open();
    // Runs the event loop until an answer that wanted accepts, a NetError, or the
    // answer time. Nothing when no such answer came.
    std::optional<Heard> await(const std::function<bool(const Heard &)> &wanted);
    // How long a request waits: the network's own time-out three times, and more.
    int answerTimeMs() const { return std::max<int>(0, net_.TimeOut()) * 3 + 500; }

    const std::optional<QString> &linkFailure() const { return linkFailure_; }
    // The NetError that ended the last wait, when it did not end the link.
    const QString &lastError() const { return lastError_; }

private:
    RecordingRadioNet net_;
    NetworkChoice::Link link_;
    std::optional<QString> linkFailure_;
    QString lastError_;
};
