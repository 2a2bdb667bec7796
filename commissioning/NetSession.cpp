#include "commissioning/NetSession.h"

#include "radionet/NetworkBase.h"

#include <QEventLoop>
#include <QTimer>

bool isLinkFailure(NetworkChoice::Link link, qint16 errNum) {
    if (link == NetworkChoice::Link::Simulated)
        return errNum == 1 || errNum == 2; // port not open, port not available
    // Port not open, not found, no permission, busy, line lost; port settings.
    return (errNum >= 1 && errNum <= 5) || errNum == 9;
}

NetSession::NetSession(RadioNetControl *network, NetworkChoice::Link link)
    : net_(network)
    , link_(link) {}

std::unique_ptr<NetSession> NetSession::make(const NetworkChoice &choice,
                                             OwnTexts::Language language, QString &problem) {
    std::unique_ptr<RadioNetControl> network = makeNetwork(choice, problem);
    // The window keeps the demo air when a scenario cannot be read; a command
    // would then survey a network nobody asked for.
    if (!problem.isEmpty())
        return nullptr;
    if (auto *ours = qobject_cast<NetworkBase *>(network.get()))
        ours->setTextLanguage(language);
    return std::make_unique<NetSession>(network.release(), choice.link);
}

void NetSession::apply(const LinkOptions &options) {
    if (options.port)
        net_.setCommPort(*options.port);
    if (options.baudRate)
        net_.setBaudRate(*options.baudRate);
    if (options.timeOutMs) {
        net_.setTimeOut(*options.timeOutMs);
        net_.setTimer(*options.timeOutMs);
    }
}

bool NetSession::open() {
    if (net_.OpenPort())
        return true;
    // The reason comes as a NetError, through the event loop.
    await([](const Heard &) { return false; });
    if (!linkFailure_)
        linkFailure_ = lastError_;
    return false;
}

std::optional<NetSession::Heard>
NetSession::await(const std::function<bool(const Heard &)> &wanted) {
    lastError_.clear();
    if (linkFailure_)
        return std::nullopt;
    QEventLoop loop;
    std::optional<Heard> heard;
    const auto take = [&](const Heard &h) {
        if (wanted(h)) {
            heard = h;
            loop.quit();
        }
    };
    using What = NetworkLog::What;
    QObject::connect(&net_, &RadioNetControl::SatelliteAnswered, &loop,
                     [&](qint16 satId, const QString &identity) {
                         take({What::SatelliteAnswered, satId, identity});
                     });
    QObject::connect(&net_, &RadioNetControl::ConfigReceived, &loop, [&](qint16 satId) {
        take({What::ConfigReceived, satId, {}});
    });
    QObject::connect(&net_, &RadioNetControl::StatusReceived, &loop, [&](qint16 satId) {
        take({What::StatusReceived, satId, {}});
    });
    // One request is waited for at a time: an error is that request's end.
    QObject::connect(&net_, &RadioNetControl::NetError, &loop,
                     [&](qint16 errNum, const QString &description) {
                         if (isLinkFailure(link_, errNum))
                             linkFailure_ = description;
                         else
                             lastError_ = description;
                         loop.quit();
                     });
    QTimer deadline;
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, &loop, &QEventLoop::quit);
    deadline.start(answerTimeMs());
    loop.exec();
    return heard;
}
