// Feeds arbitrary bytes as a configuration file to the line scanner, the reader and
// the profile writer, and checks what must hold for any file:
// - a failed read leaves both lists of the control empty; a successful one leaves
//   at most sixteen satellites;
// - a key written by the profile writer reads back with its value, and writing it
//   a second time changes no byte.

#include "config/ConfigFile.h"
#include "config/IniFile.h"
#include "platform/ProfileString.h"
#include "platform/RuntimeError.h"
#include "radionet/RadioNetControl.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

// The smallest control that keeps the contract's list rules: 1-based positions, a
// missing position or identifier raises the run-time error, the first match by id.
class Sat : public Satellite {
public:
    explicit Sat(qint16 id)
        : id_(id) {}
    qint16 SatId() const override { return id_; }
    void setSatId(qint16 v) override { id_ = v; }
    qint32 Enabled() const override { return enabled_; }
    void setEnabled(qint16 v) override { enabled_ = v; }
    qint16 RfVersionMajor() const override { return 0; }
    qint16 RfVersionMinor() const override { return 0; }
    qint16 Interface() const override { return interface_; }
    void setInterface(qint16 v) override { interface_ = v; }
    qint16 RxFree() const override { return 0; }
    qint16 TxFree() const override { return 0; }
    void setNewSatId(qint16) override {}
    void Detect() override {}
    void RequestConfig() override {}
    void Configure() override {}
    void RequestStatus() override {}

private:
    qint16 id_;
    qint32 enabled_ = 0;
    qint16 interface_ = 0;
};

class Sats : public SatelliteList {
public:
    SatellitePtr Item(qint16 position) const override {
        if (position < 1 || position > Count())
            throw RuntimeError::subscriptOutOfRange();
        return items_[position - 1];
    }
    SatellitePtr Add(qint16 id) override { return items_.emplace_back(std::make_shared<Sat>(id)); }
    void Remove(qint16) override {}
    qint32 Count() const override { return qint32(items_.size()); }
    SatellitePtr ItemById(qint16 id) const override {
        for (const auto &s : items_)
            if (s->SatId() == id)
                return s;
        throw RuntimeError::subscriptOutOfRange();
    }
    void Clear() override { items_.clear(); }

private:
    std::vector<SatellitePtr> items_;
};

class Terminal : public DeclaredTerminal {
public:
    explicit Terminal(qint16 n)
        : n_(n) {}
    qint16 Number() const override { return n_; }

private:
    qint16 n_;
};

class Terminals : public TerminalList {
public:
    DeclaredTerminalPtr Item(qint16 position) const override {
        if (position < 1 || position > Count())
            throw RuntimeError::subscriptOutOfRange();
        return items_[position - 1];
    }
    DeclaredTerminalPtr Add(qint16 n) override {
        return items_.emplace_back(std::make_shared<Terminal>(n));
    }
    qint32 Count() const override { return qint32(items_.size()); }
    void Clear() override { items_.clear(); }

private:
    std::vector<DeclaredTerminalPtr> items_;
};

class Net : public RadioNetControl {
public:
    QString BaudRate() const override { return baudRate_; }
    void setBaudRate(const QString &v) override { baudRate_ = v; }
    SatelliteList &Satellites() override { return satellites_; }
    TerminalList &Devices() override { return devices_; }
    bool StartPolling() override { return true; }
    bool StopPolling() override { return true; }
    QString CommPort() const override { return commPort_; }
    void setCommPort(const QString &v) override { commPort_ = v; }
    qint16 TimeOut() const override { return timeOut_; }
    void setTimeOut(qint16 v) override { timeOut_ = v; }
    bool OpenPort() override { return true; }
    bool ClosePort() override { return true; }
    qint16 LinkState() const override { return 0; }
    qint32 Synchro() const override { return synchro_; }
    void setSynchro(qint32 v) override { synchro_ = v; }
    qint16 Timer() const override { return timer_; }
    void setTimer(qint16 v) override { timer_ = v; }
    void SetNotification(bool &, qint16 &, qint16 &) override {}
    void GetNotification(bool &, qint16 &, qint16 &) override {}
    qint16 Mode() const override { return mode_; }
    void setMode(qint16 v) override { mode_ = v; }
    bool Enabled() const override { return enabled_; }
    void setEnabled(bool v) override { enabled_ = v; }

private:
    Sats satellites_;
    Terminals devices_;
    QString baudRate_, commPort_;
    qint16 timeOut_ = 0, timer_ = 0, mode_ = 0;
    qint32 synchro_ = 0;
    bool enabled_ = false;
};

[[noreturn]] void fail(const char *what) {
    std::fprintf(stderr, "fuzz_configfile: %s\n", what);
    std::abort();
}

QByteArray contents(const QString &path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        fail("cannot read back the scratch file");
    return f.readAll();
}

void checkWriteReadsBack(const QString &path, const QString &section, const QString &key,
                         const QString &value) {
    if (!WritePrivateProfileString(section, key, value, path))
        fail("the profile writer failed on a writable file");
    QString read;
    if (!ReadIniKey(section, key, read, path) || read != value)
        fail("a written key does not read back");
    const QByteArray once = contents(path);
    if (!WritePrivateProfileString(section, key, value, path) || contents(path) != once)
        fail("writing the same key again changed the file");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/norvale-fuzz-XXXXXX"));
    if (!dir.isValid())
        fail("no scratch folder");
    const QString path = dir.filePath(QStringLiteral("input.nvl"));
    {
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly) ||
            f.write(reinterpret_cast<const char *>(data), qint64(size)) != qint64(size))
            fail("cannot write the scratch file");
    }

    QString value;
    ReadIniKey(QStringLiteral("General"), QStringLiteral("CommPort"), value, path);
    ReadIniKey(QStringLiteral("satellite3"), QStringLiteral("satid"), value, path);

    Net net;
    net.Satellites().Add(1);
    net.Devices().Add(1);
    if (ReadConfigFile(path, net)) {
        if (net.Satellites().Count() > 16)
            fail("more than sixteen satellites read");
    } else if (net.Satellites().Count() != 0 || net.Devices().Count() != 0) {
        fail("a failed read left a list filled");
    }

    checkWriteReadsBack(path, QStringLiteral("Satellite16"), QStringLiteral("Enabled"),
                        QStringLiteral("1"));
    checkWriteReadsBack(path, QStringLiteral("General"), QStringLiteral("File1"),
                        QStringLiteral("/home/t\u00e9cnico/r\u00e9seau.nvl"));
    return 0;
}
