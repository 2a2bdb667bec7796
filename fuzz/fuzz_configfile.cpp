// Feeds arbitrary bytes as a configuration file to the line scanner, the reader and
// the profile writer, and checks what must hold for any file:
// - a failed read leaves both lists of the control empty; a successful one leaves
//   at most sixteen satellites;
// - a key written by the profile writer reads back with its value, and writing it
//   a second time changes no byte.

#include "config/ConfigFile.h"
#include "config/IniFile.h"
#include "platform/ProfileString.h"
#include "radionet/SimulatedRadioNet.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

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
    // One scratch folder for the whole run, removed at exit: a folder per input
    // costs more time than the routines under test.
    static const QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/norvale-fuzz-XXXXXX"));
    if (!dir.isValid())
        fail("no scratch folder");
    const QString path = dir.filePath(QStringLiteral("input.nvl"));
    {
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
            f.write(reinterpret_cast<const char *>(data), qint64(size)) != qint64(size))
            fail("cannot write the scratch file");
    }

    QString value;
    ReadIniKey(QStringLiteral("General"), QStringLiteral("CommPort"), value, path);
    ReadIniKey(QStringLiteral("satellite3"), QStringLiteral("satid"), value, path);

    SimulatedRadioNet net;
    net.Satellites().Add(1);
    net.Devices().Add(1);
    const bool read = ReadConfigFile(path, net);
    if (read && net.Satellites().Count() > 16)
        fail("more than sixteen satellites read");
    if (!read && (net.Satellites().Count() != 0 || net.Devices().Count() != 0))
        fail("a failed read left a list filled");

    checkWriteReadsBack(path, QStringLiteral("Satellite16"), QStringLiteral("Enabled"),
                        QStringLiteral("1"));
    checkWriteReadsBack(path, QStringLiteral("General"), QStringLiteral("File1"),
                        QStringLiteral("/home/t\u00e9cnico/r\u00e9seau.nvl"));
    return 0;
}
