// norvale-netsim: the radio network at the far end of a serial line, for Norvale Setup
// to talk to without a radio.

#include "radionet/AirStation.h"
#include "radionet/Scenario.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSerialPort>
#include <QSocketNotifier>
#include <QTextStream>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <optional>
#include <pthread.h>
#include <sys/signalfd.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace {

enum ExitCode { Served = 0, Failed = 1, BadUsage = 2 };

constexpr int DefaultBaud = 38400;

QString systemError(const char *call) {
    return QStringLiteral("%1: %2").arg(QLatin1String(call),
                                        QString::fromLocal8Bit(strerror(errno)));
}

// A file descriptor, closed with its owner.
class Fd {
public:
    explicit Fd(int fd = -1)
        : fd_(fd) {}
    Fd(Fd &&other) noexcept
        : fd_(std::exchange(other.fd_, -1)) {}
    Fd &operator=(Fd &&other) noexcept {
        std::swap(fd_, other.fd_);
        return *this;
    }
    ~Fd() {
        if (fd_ >= 0)
            ::close(fd_);
    }
    int get() const { return fd_; }
    bool valid() const { return fd_ >= 0; }

private:
    int fd_;
};

// The master side of a pseudo-terminal pair, read and written without blocking. The
// slave stays open here too: the program under test closes and reopens its port at
// will, and the master would see a hang-up each time it is the last one out.
class PseudoTerminal {
public:
    // Empty, with the reason in error, when the pair cannot be made.
    static std::unique_ptr<PseudoTerminal> open(QString &error) {
        std::unique_ptr<PseudoTerminal> pty(new PseudoTerminal);
        pty->master_ = Fd(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
        if (!pty->master_.valid()) {
            error = systemError("posix_openpt");
            return nullptr;
        }
        const int master = pty->master_.get();
        if (::grantpt(master) != 0 || ::unlockpt(master) != 0) {
            error = systemError("grantpt/unlockpt");
            return nullptr;
        }
        char name[128];
        if (::ptsname_r(master, name, sizeof name) != 0) {
            error = systemError("ptsname");
            return nullptr;
        }
        pty->device_ = QString::fromLocal8Bit(name);
        pty->slave_ = Fd(::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC));
        termios raw{};
        if (!pty->slave_.valid() || ::tcgetattr(pty->slave_.get(), &raw) != 0) {
            error = systemError(name);
            return nullptr;
        }
        // Raw: no echo, no line editing, every byte as it is.
        ::cfmakeraw(&raw);
        if (::tcsetattr(pty->slave_.get(), TCSANOW, &raw) != 0 ||
            ::fcntl(master, F_SETFL, ::fcntl(master, F_GETFL) | O_NONBLOCK) != 0) {
            error = systemError(name);
            return nullptr;
        }
        return pty;
    }

    QString device() const { return device_; }

    // onBytes gets what comes off the line; onFailure the reason the line is lost.
    void serve(std::function<void(QByteArrayView)> onBytes,
               std::function<void(const QString &)> onFailure) {
        onBytes_ = std::move(onBytes);
        onFailure_ = std::move(onFailure);
        reader_ = std::make_unique<QSocketNotifier>(master_.get(), QSocketNotifier::Read);
        QObject::connect(reader_.get(), &QSocketNotifier::activated, [this] { readSome(); });
        writer_ = std::make_unique<QSocketNotifier>(master_.get(), QSocketNotifier::Write);
        writer_->setEnabled(false);
        QObject::connect(writer_.get(), &QSocketNotifier::activated, [this] { writeSome(); });
    }

    void write(const QByteArray &bytes) {
        unwritten_ += bytes;
        writeSome();
    }

private:
    PseudoTerminal() = default;

    void readSome() {
        char buffer[4096];
        for (;;) {
            const ssize_t n = ::read(master_.get(), buffer, sizeof buffer);
            if (n > 0) {
                onBytes_(QByteArrayView(buffer, n));
                continue;
            }
            if (n < 0 && errno == EINTR)
                continue;
            if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
                return;
            fail(n == 0 ? QStringLiteral("the line was closed") : systemError("read"));
            return;
        }
    }

    void writeSome() {
        while (!unwritten_.isEmpty()) {
            const ssize_t n = ::write(master_.get(), unwritten_.constData(), unwritten_.size());
            if (n > 0) {
                unwritten_.remove(0, n);
                continue;
            }
            if (n < 0 && errno == EINTR)
                continue;
            if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
                break; // the rest when the line takes more
            fail(systemError("write"));
            return;
        }
        if (writer_)
            writer_->setEnabled(!unwritten_.isEmpty());
    }

    void fail(const QString &reason) {
        reader_->setEnabled(false);
        writer_->setEnabled(false);
        onFailure_(reason);
    }

    Fd master_, slave_;
    QString device_;
    QByteArray unwritten_;
    std::unique_ptr<QSocketNotifier> reader_, writer_;
    std::function<void(QByteArrayView)> onBytes_;
    std::function<void(const QString &)> onFailure_;
};

struct Options {
    bool pty = false;
    QString port;
    int baud = DefaultBaud;
    std::optional<Scenario> scenario; // none: the demo network
    bool verbose = false;
};

// The options, or nothing after saying on standard error what is wrong with them.
std::optional<Options> parseOptions(QCommandLineParser &parser) {
    parser.setApplicationDescription(QStringLiteral(
        "Plays the radio network at the far end of a serial line: the satellites answer\n"
        "Norvale Setup as they would on the air, at the speed of a real line.\n"
        "\n"
        "With --pty it makes a serial device of its own and prints its name, such as\n"
        "/dev/pts/5, alone on the first line. Type that name in Norvale Setup's Port box\n"
        "(with Link=Serial in the [Network] section of Setup.ini) and leave this program\n"
        "running while you work. Stop it with Ctrl+C.\n"
        "\n"
        "With --port it answers on a real serial port, such as /dev/ttyS0 or /dev/ttyUSB0,\n"
        "wired to the PC running Norvale Setup by a null-modem cable. Opening a port needs\n"
        "membership of the dialout group: sudo adduser $USER dialout, then log in again.\n"
        "\n"
        "Exit codes: 0 stopped by Ctrl+C or SIGTERM, 1 the line failed, 2 bad options or\n"
        "a bad scenario file."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption pty(
        QStringLiteral("pty"), QStringLiteral("Serve on a new pseudo-terminal; print its device."));
    const QCommandLineOption port(QStringLiteral("port"),
                                  QStringLiteral("Serve on an existing serial device."),
                                  QStringLiteral("DEVICE"));
    const QCommandLineOption scenario(
        QStringLiteral("scenario"),
        QStringLiteral("What is on the air (see examples/demo-air.ini). Default: the demo "
                       "network, Sat IDs 1, 2 and 3."),
        QStringLiteral("FILE"));
    const QCommandLineOption baud(
        QStringLiteral("baud"),
        QStringLiteral("Line speed in bits per second, %1 by default with --pty and with --port; "
                       "set Norvale Setup to the same. With --pty, 0 answers without the line's "
                       "delays.")
            .arg(DefaultBaud),
        QStringLiteral("N"), QString::number(DefaultBaud));
    const QCommandLineOption verbose(QStringLiteral("verbose"),
                                     QStringLiteral("Print every frame, with the time in ms since "
                                                    "the start, after the device's line."));
    parser.addOptions({pty, port, scenario, baud, verbose});

    QTextStream err(stderr);
    const auto refuse = [&](const QString &reason) {
        err << "norvale-netsim: " << reason << "\nTry norvale-netsim --help." << Qt::endl;
        return std::nullopt;
    };
    if (!parser.parse(QCoreApplication::arguments()))
        return refuse(parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        parser.showHelp(Served);
    if (parser.isSet(QStringLiteral("version")))
        parser.showVersion();
    if (!parser.positionalArguments().isEmpty())
        return refuse(QStringLiteral("unexpected argument \"%1\"")
                          .arg(parser.positionalArguments().constFirst()));

    Options options;
    options.pty = parser.isSet(pty);
    options.port = parser.value(port);
    if (options.pty == parser.isSet(port))
        return refuse(QStringLiteral("give either --pty or --port DEVICE"));
    bool ok = false;
    options.baud = parser.value(baud).toInt(&ok);
    if (!ok || options.baud < (options.pty ? 0 : 1) || options.baud > 4'000'000)
        return refuse(QStringLiteral("--baud: expected a speed from %1 to 4000000, found \"%2\"")
                          .arg(options.pty ? 0 : 1)
                          .arg(parser.value(baud)));
    options.verbose = parser.isSet(verbose);
    if (parser.isSet(scenario)) {
        QString error;
        std::optional<Scenario> read = readScenario(parser.value(scenario), error);
        if (!read) {
            err << "norvale-netsim: " << error << Qt::endl;
            return std::nullopt;
        }
        options.scenario = std::move(read);
    }
    return options;
}

// SIGINT and SIGTERM, read as data on the event loop. Blocked before anything else
// runs, so that no thread takes them the default way.
Fd stopSignals() {
    sigset_t stop;
    sigemptyset(&stop);
    sigaddset(&stop, SIGINT);
    sigaddset(&stop, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &stop, nullptr);
    return Fd(::signalfd(-1, &stop, SFD_NONBLOCK | SFD_CLOEXEC));
}

} // namespace

int main(int argc, char *argv[]) {
    const Fd stopFd = stopSignals();
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("norvale-netsim"));
    QCoreApplication::setApplicationVersion(QStringLiteral("%1.%2.%3")
                                                .arg(NORVALE_VERSION_MAJOR)
                                                .arg(NORVALE_VERSION_MINOR)
                                                .arg(NORVALE_VERSION_PATCH));
    QCommandLineParser parser;
    const std::optional<Options> options = parseOptions(parser);
    if (!options)
        return BadUsage;

    QTextStream out(stdout);
    QTextStream err(stderr);
    if (!stopFd.valid()) {
        err << "norvale-netsim: " << systemError("signalfd") << '\n';
        return Failed;
    }
    QSocketNotifier stop(stopFd.get(), QSocketNotifier::Read);
    QObject::connect(&stop, &QSocketNotifier::activated, [&] {
        signalfd_siginfo info;
        while (::read(stopFd.get(), &info, sizeof info) > 0) {
        }
        QCoreApplication::exit(Served);
    });
    const auto lineLost = [&err](const QString &reason) {
        err << "norvale-netsim: " << reason << Qt::endl;
        QCoreApplication::exit(Failed);
    };

    // A real port paces itself; a pseudo-terminal is paced here.
    const std::optional<Scenario> &scenario = options->scenario;
    AirStation station(scenario ? scenario->air() : Air::demo(),
                       scenario.value_or(Scenario{}).answerDelayMs,
                       options->pty ? options->baud : 0);
    QElapsedTimer sinceStart;
    sinceStart.start();
    if (options->verbose)
        QObject::connect(&station, &AirStation::traced, [&](const QString &line) {
            out << QString::number(double(sinceStart.nsecsElapsed()) / 1e6, 'f', 3)
                       .rightJustified(11)
                << "  " << line << Qt::endl;
        });

    std::unique_ptr<PseudoTerminal> pty;
    QSerialPort port;
    if (options->pty) {
        QString error;
        pty = PseudoTerminal::open(error);
        if (!pty) {
            err << "norvale-netsim: cannot make a pseudo-terminal: " << error << '\n';
            return Failed;
        }
        pty->serve([&station](QByteArrayView bytes) { station.received(bytes); }, lineLost);
        QObject::connect(&station, &AirStation::send,
                         [&pty](const QByteArray &bytes) { pty->write(bytes); });
        out << pty->device() << Qt::endl;
    } else {
        port.setPortName(options->port);
        port.setBaudRate(options->baud);
        port.setDataBits(QSerialPort::Data8);
        port.setParity(QSerialPort::NoParity);
        port.setStopBits(QSerialPort::OneStop);
        port.setFlowControl(QSerialPort::NoFlowControl);
        if (!port.open(QIODevice::ReadWrite)) {
            err << "norvale-netsim: cannot open " << options->port << ": " << port.errorString();
            if (port.error() == QSerialPort::PermissionError)
                err << " (is your user in the dialout group?)";
            err << '\n';
            return Failed;
        }
        QObject::connect(&port, &QSerialPort::readyRead, [&] { station.received(port.readAll()); });
        QObject::connect(&station, &AirStation::send,
                         [&port](const QByteArray &bytes) { port.write(bytes); });
        QObject::connect(&port, &QSerialPort::errorOccurred, [&](QSerialPort::SerialPortError e) {
            if (e == QSerialPort::ResourceError)
                lineLost(options->port + QStringLiteral(": ") + port.errorString());
        });
        out << options->port << Qt::endl;
    }
    return app.exec();
}
