#include "radionet/SerialRadioNet.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSerialPort>
#include <algorithm>
#include <unistd.h>

namespace {

wire::Command commandOf(NetObjectHost::Request kind) {
    switch (kind) {
    case NetObjectHost::Request::Detect:
        return wire::Command::Detect;
    case NetObjectHost::Request::RequestConfig:
        return wire::Command::ReadConfig;
    case NetObjectHost::Request::RequestStatus:
        return wire::Command::ReadStatus;
    case NetObjectHost::Request::Configure:
        break;
    }
    return wire::Command::Configure;
}

const char *callName(NetObjectHost::Request kind) {
    switch (kind) {
    case NetObjectHost::Request::Detect:
        return "Detect";
    case NetObjectHost::Request::RequestConfig:
        return "RequestConfig";
    case NetObjectHost::Request::RequestStatus:
        return "RequestStatus";
    case NetObjectHost::Request::Configure:
        break;
    }
    return "Configure";
}

} // namespace

SerialRadioNet::SerialRadioNet(QObject *parent)
    : NetworkBase(parent)
    , port_(new QSerialPort(this))
    , later_(this) {
    answerTimer_.setSingleShot(true);
    answerTimer_.setTimerType(Qt::PreciseTimer);
    connect(&answerTimer_, &QTimer::timeout, this, &SerialRadioNet::onTimeout);
    connect(port_, &QSerialPort::readyRead, this, &SerialRadioNet::onReadyRead);
    connect(port_, &QSerialPort::errorOccurred, this, &SerialRadioNet::onPortError);
}

SerialRadioNet::~SerialRadioNet() {
    // Nothing may answer into a half-destroyed network.
    port_->disconnect(this);
}

QString SerialRadioNet::deviceFor(const QString &commPort) {
    const QRegularExpression windowsName(QStringLiteral("^COM([1-9])$"),
                                         QRegularExpression::CaseInsensitiveOption);
    const auto match = windowsName.match(commPort.trimmed());
    if (match.hasMatch())
        return QStringLiteral("/dev/ttyS%1").arg(match.captured(1).toInt() - 1);
    return commPort.trimmed();
}

bool SerialRadioNet::OpenPort() {
    logCall(QStringLiteral("OpenPort"));
    if (linkState_ != 0)
        return true;
    const QString device = deviceFor(CommPort());
    bool isNumber = false;
    const int baud = BaudRate().toInt(&isNumber);
    if (!isNumber || baud <= 0) {
        fail(PortSettingsError, text("PortBadSpeed", BaudRate()));
        return false;
    }
    if (!QFileInfo::exists(device)) {
        fail(PortNotFoundError, text("PortNotFound", device));
        return false;
    }
    port_->setPortName(device);
    port_->setBaudRate(baud);
    port_->setDataBits(QSerialPort::Data8);
    port_->setParity(QSerialPort::NoParity);
    port_->setStopBits(QSerialPort::OneStop);
    port_->setFlowControl(QSerialPort::NoFlowControl);
    if (!port_->open(QIODevice::ReadWrite)) {
        const QSerialPort::SerialPortError error = port_->error();
        const QByteArray path = device.toLocal8Bit();
        // The port refuses both a user without rights and a second program: only
        // the rights on the device tell the two apart.
        if (error == QSerialPort::PermissionError && ::access(path.constData(), R_OK | W_OK) != 0)
            fail(PermissionError, text("PortNoPermission", device));
        else if (error == QSerialPort::PermissionError)
            fail(PortBusyError, text("PortBusy", device));
        else if (error == QSerialPort::DeviceNotFoundError)
            fail(PortNotFoundError, text("PortNotFound", device));
        else
            fail(PortSettingsError, text("PortCannotOpen", device, port_->errorString()));
        port_->clearError();
        return false;
    }
    port_->clear(QSerialPort::AllDirections); // what lay in the line before is not an answer
    device_ = device;
    decoder_.reset();
    counters_ = {};
    linkState_ = 1;
    return true;
}

bool SerialRadioNet::ClosePort() {
    logCall(QStringLiteral("ClosePort"));
    closeLine();
    return true;
}

bool SerialRadioNet::StartPolling() {
    logCall(QStringLiteral("StartPolling"));
    if (linkState_ == 0) {
        fail(PortNotOpenError, text("PortNotOpen"));
        return false;
    }
    linkState_ = 2;
    // The far end answers: the network is there and speaks this protocol.
    enqueue(Exchange{wire::Frame{.satId = wire::LinkAddress,
                                 .command = quint8(wire::Command::Polling),
                                 .payload = wire::payloadOf(wire::Polling{true})},
                     nullptr});
    return true;
}

bool SerialRadioNet::StopPolling() {
    logCall(QStringLiteral("StopPolling"));
    if (linkState_ == 0)
        return false;
    if (linkState_ == 2)
        linkState_ = 3;
    enqueue(Exchange{wire::Frame{.satId = wire::LinkAddress,
                                 .command = quint8(wire::Command::Polling),
                                 .payload = wire::payloadOf(wire::Polling{false})},
                     nullptr});
    return true;
}

void SerialRadioNet::request(Request kind, const std::shared_ptr<NetSatellite> &satellite) {
    // The message carries the address and settings of the moment it is asked for.
    const qint16 address = satellite->SatId();
    if (kind == Request::Configure)
        logCall(QStringLiteral("Configure %1 %2").arg(address).arg(satellite->newSatId()));
    else
        logCall(QStringLiteral("%1 %2").arg(QLatin1String(callName(kind))).arg(address));
    if (linkState_ == 0) {
        fail(PortNotOpenError, text("PortNotOpen"));
        return;
    }
    // Asking again for what is already on its way rides on that exchange, as the live
    // test does on every answer.
    if (kind == Request::RequestConfig || kind == Request::RequestStatus) {
        const auto same = [&](const Exchange &e) {
            return e.frame.kind() == commandOf(kind) && e.satellite == satellite;
        };
        if ((current_ && same(*current_)) || std::any_of(waiting_.begin(), waiting_.end(), same))
            return;
    }
    wire::Frame frame{.satId = address, .command = quint8(commandOf(kind)), .payload = {}};
    if (kind == Request::Configure)
        frame.payload = wire::payloadOf(
            wire::Configure{satellite->newSatId(), satellite->Interface(), satellite->Enabled()});
    enqueue(Exchange{frame, satellite});
}

void SerialRadioNet::enqueue(Exchange exchange) {
    waiting_.push_back(std::move(exchange));
    sendNext();
}

void SerialRadioNet::sendNext() {
    if (current_ || waiting_.empty() || linkState_ == 0)
        return;
    current_ = std::move(waiting_.front());
    waiting_.pop_front();
    current_->frame.sequence = ++sequence_;
    current_->receivedAtStart = counters_.bytesReceived;
    transmit();
}

void SerialRadioNet::transmit() {
    const QByteArray bytes = wire::encode(current_->frame);
    port_->write(bytes);
    ++counters_.framesSent;
    counters_.bytesSent += quint64(bytes.size());
    // The wait starts once the request has left: at a slow speed that takes a while.
    const qint64 bitsPerSecond = std::max<qint64>(1, port_->baudRate());
    const qint64 sendingMs = (qint64(bytes.size()) * 10 * 1000 + bitsPerSecond - 1) / bitsPerSecond;
    answerTimer_.start(int(std::max<qint64>(1, TimeOut()) + sendingMs));
}

void SerialRadioNet::onReadyRead() {
    const QByteArray bytes = port_->readAll();
    counters_.bytesReceived += quint64(bytes.size());
    const quint64 droppedBefore = decoder_.framesDropped();
    decoder_.feed(bytes);
    counters_.framesDropped += decoder_.framesDropped() - droppedBefore;
    while (const std::optional<wire::Frame> frame = decoder_.next()) {
        ++counters_.framesReceived;
        onAnswer(*frame);
    }
}

void SerialRadioNet::onAnswer(const wire::Frame &answer) {
    const bool awaited =
        current_ && answer.isAnswer() && answer.sequence == current_->frame.sequence &&
        (answer.kind() == wire::Command::Refused ||
         (answer.kind() == current_->frame.kind() &&
          // Only a broadcast Detect is answered under another Sat ID than its own.
          (answer.satId == current_->frame.satId || current_->frame.satId == wire::AnySatellite)));
    if (!awaited) {
        ++counters_.framesDropped; // late, or not for us: the exchange under way goes on
        return;
    }
    const std::shared_ptr<NetSatellite> satellite = current_->satellite;
    const qint16 satId = answer.satId;
    // An answer whose payload cannot be read counts as no answer.
    switch (answer.kind()) {
    case wire::Command::Detect: {
        const auto identity = wire::identityFrom(answer.payload);
        if (!identity)
            return void(++counters_.framesDropped);
        later_.post(0,
                    [this, satId, name = identity->text] { emit SatelliteAnswered(satId, name); });
        break;
    }
    case wire::Command::ReadConfig: {
        const auto config = wire::configFrom(answer.payload);
        if (!config)
            return void(++counters_.framesDropped);
        // The object holds the values by the time the event is raised.
        later_.post(0, [this, satellite, satId, c = *config] {
            satellite->takeConfig(c.interfaceCode, c.enabled, c.rfVersionMajor, c.rfVersionMinor);
            emit ConfigReceived(satId);
        });
        break;
    }
    case wire::Command::ReadStatus: {
        const auto status = wire::statusFrom(answer.payload);
        if (!status)
            return void(++counters_.framesDropped);
        later_.post(0, [this, satellite, satId, s = *status] {
            satellite->takeStatus(s.rxFree, s.txFree);
            emit StatusReceived(satId);
        });
        break;
    }
    case wire::Command::Refused: {
        const auto refusal = wire::refusalFrom(answer.payload);
        fail(RefusedError, refusal == wire::Refusal::UnsupportedVersion ? text("RefusedVersion")
                                                                        : text("RefusedRequest"));
        break;
    }
    case wire::Command::Configure: // taken: the satellite now answers to its new id
    case wire::Command::Polling:
        break;
    }
    answerTimer_.stop();
    current_.reset();
    sendNext();
}

void SerialRadioNet::onTimeout() {
    if (!current_)
        return;
    ++counters_.timeouts;
    if (--current_->triesLeft > 0) {
        ++counters_.retries;
        transmit(); // the same sequence: a late answer to the last try still counts
        return;
    }
    const Exchange failed = std::move(*current_);
    current_.reset();
    if (counters_.bytesReceived > failed.receivedAtStart)
        fail(UnreadableError, text("Unreadable", device_, BaudRate()));
    else if (failed.frame.kind() == wire::Command::Polling)
        fail(NoAnswerError, text("NoAnswerNetwork", device_));
    else if (failed.frame.kind() == wire::Command::Configure)
        fail(NoAnswerError, text("NoAnswerConfigure", QString::number(failed.frame.satId)));
    else if (failed.frame.satId == wire::AnySatellite &&
             failed.frame.kind() == wire::Command::Detect)
        fail(NoAnswerError, text("NoAnswerAny"));
    else
        fail(NoAnswerError, text("NoAnswerSatellite", QString::number(failed.frame.satId)));
    sendNext();
}

void SerialRadioNet::onPortError() {
    const QSerialPort::SerialPortError error = port_->error();
    if (error == QSerialPort::NoError || error == QSerialPort::TimeoutError || linkState_ == 0)
        return;
    // A device that goes away while open (a cable pulled out, the far end of a
    // pseudo-terminal closed) is a line lost: closed here, reported once.
    closeLine();
    fail(LineLostError, text("LineLost", device_));
}

void SerialRadioNet::fail(qint16 errNum, const QString &description) {
    later_.post(0, [this, errNum, description] { emit NetError(errNum, description); });
}

void SerialRadioNet::closeLine() {
    answerTimer_.stop();
    waiting_.clear();
    current_.reset();
    if (port_->isOpen())
        port_->close();
    port_->clearError();
    decoder_.reset();
    linkState_ = 0;
}
