#include "support/FarEnd.h"

#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

FarEnd::FarEnd(Air air)
    : station_(std::move(air), 0, 0) {
    master_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0)
        qFatal("no pseudo-terminal");
    char name[128];
    ptsname_r(master_, name, sizeof name);
    device_ = QString::fromLocal8Bit(name);
    // Held open in raw mode, so that the line lives while the program reopens it.
    heldSlave_ = ::open(name, O_RDWR | O_NOCTTY);
    termios raw{};
    tcgetattr(heldSlave_, &raw);
    cfmakeraw(&raw);
    tcsetattr(heldSlave_, TCSANOW, &raw);

    notifier_ = std::make_unique<QSocketNotifier>(master_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, &station_, [this] {
        char buffer[512];
        const ssize_t n = ::read(master_, buffer, sizeof buffer);
        if (n > 0)
            station_.received(QByteArrayView(buffer, n));
    });
    QObject::connect(&station_, &AirStation::send, &station_,
                     [this](const QByteArray &bytes) { write(tamper ? tamper(bytes) : bytes); });
}

FarEnd::~FarEnd() {
    cut();
}

void FarEnd::write(const QByteArray &bytes) {
    if (master_ >= 0 && ::write(master_, bytes.constData(), size_t(bytes.size())) < 0)
        qWarning("far end: write failed");
}

void FarEnd::cut() {
    notifier_.reset();
    for (int *fd : {&heldSlave_, &master_}) {
        if (*fd >= 0)
            ::close(*fd);
        *fd = -1;
    }
}
