#include "about/SysInfo.h"

#include "about/ProgramInfo.h"
#include "platform/RuntimeError.h"

#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QProcess>
#include <cmath>

namespace {

const QString gRegKeySysInfoLoc = QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools Location");
const QString gRegValSysInfoLoc = QStringLiteral("MSINFO");
const QString gRegKeySysInfo = QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO");
const QString gRegValSysInfo = QStringLiteral("PATH");

RuntimeError typeMismatch() {
    return RuntimeError(RuntimeError::TypeMismatch, QStringLiteral("Type mismatch"));
}

// The decimal text of a "&h" literal, as the number conversion reads it: up to
// eight significant digits make a 32-bit signed number ("&hFFFFFFFF" is -1), more
// make a floating-point one shown with at most 15 significant digits.
QString decimalTextOfHexLiteral(const QString &literal) {
    if (literal.size() < 3 || literal[0] != u'&' || (literal[1] != u'h' && literal[1] != u'H'))
        throw typeMismatch();
    QList<int> digits;
    for (qsizetype i = 2; i < literal.size(); ++i) {
        const char16_t c = literal[i].unicode();
        int d = -1;
        if (c >= u'0' && c <= u'9')
            d = c - u'0';
        else if (c >= u'a' && c <= u'f')
            d = c - u'a' + 10;
        else if (c >= u'A' && c <= u'F')
            d = c - u'A' + 10;
        if (d < 0)
            throw typeMismatch();
        if (d != 0 || !digits.isEmpty()) // leading zeros do not count
            digits.append(d);
    }
    if (digits.size() <= 8) {
        quint32 value = 0;
        for (int d : digits)
            value = value * 16 + quint32(d);
        return QString::number(qint32(value));
    }
    double value = 0;
    for (int d : digits)
        value = value * 16 + d;
    if (!std::isfinite(value))
        throw RuntimeError::overflow();
    if (value < 1e15)
        return QString::number(value, 'f', 0);
    // 1.84467440737096E+19: the mantissa without trailing zeros.
    QString text = QString::number(value, 'E', 14);
    const qsizetype e = text.indexOf(u'E');
    qsizetype end = e;
    while (text[end - 1] == u'0')
        --end;
    if (text[end - 1] == u'.')
        --end;
    text.remove(end, e - end);
    return text;
}

// Started detached, the tool gets a normal window with the focus as its desktop
// gives new windows one.
bool startProgram(const ProgramStarter &starter, const QString &path) {
    return starter ? starter(path) : startDetachedProgram(path);
}

} // namespace

bool startDetachedProgram(const QString &program) {
    if (program.isEmpty())
        return false;
    return QProcess::startDetached(program, {});
}

QString sysInfoUnavailableText() {
    return QStringLiteral("Les informations système ne sont pas disponibles actuellement");
}

bool GetKeyValue(const RegistryFile &registry, RegistryFile::Root KeyRoot, const QString &KeyName,
                 const QString &SubKeyRef, QString &KeyVal) {
    RegistryFile::Key hKey;
    // Opened with every access right: the file grants them all.
    if (registry.openKey(KeyRoot, KeyName, hKey) != RegistryFile::Success) {
        KeyVal.clear();
        return false;
    }

    QByteArray tmpVal(1024, '\0');
    quint32 KeyValSize = 1024;
    quint32 KeyValType = RegistryFile::REG_NONE;
    if (hKey.queryValue(SubKeyRef, KeyValType, tmpVal, KeyValSize) != RegistryFile::Success) {
        KeyVal.clear();
        hKey.close();
        return false;
    }

    // Strings come with their terminating zero byte; a last zero byte goes whatever
    // the type, so a double word ending in a zero byte keeps only three.
    tmpVal.truncate(qsizetype(KeyValSize));
    if (!tmpVal.isEmpty() && tmpVal.back() == '\0')
        tmpVal.chop(1);

    switch (KeyValType) {
    case RegistryFile::REG_SZ:
        KeyVal = QString::fromUtf8(tmpVal);
        break;
    case RegistryFile::REG_DWORD:
        // Last byte first, each in hexadecimal without a leading zero (so 0x0a gives
        // one digit), appended to what KeyVal already holds.
        for (qsizetype i = tmpVal.size() - 1; i >= 0; --i)
            KeyVal += QString::number(quint8(tmpVal[i]), 16).toUpper();
        KeyVal = decimalTextOfHexLiteral(QStringLiteral("&h") + KeyVal);
        break;
    default:
        break; // other types leave the text as it was
    }

    hKey.close();
    return true;
}

void StartSysInfo(const QString &programFolder, const ProgramStarter &starter, QWidget *parent) {
    bool started = false;
    try {
        const RegistryFile registry(QDir(programFolder).filePath(RegistryFile::fileName()));
        QString SysInfoPath;
        if (GetKeyValue(registry, RegistryFile::Root::LocalMachine, gRegKeySysInfo, gRegValSysInfo,
                        SysInfoPath)) {
            started = startProgram(starter, SysInfoPath);
        } else if (GetKeyValue(registry, RegistryFile::Root::LocalMachine, gRegKeySysInfoLoc,
                               gRegValSysInfoLoc, SysInfoPath)) {
            // The folder is joined as on the system the value was written for; on
            // this one such a path is simply not found.
            SysInfoPath += QStringLiteral("\\MSINFO32.EXE");
            if (QFileInfo(SysInfoPath).isFile())
                started = startProgram(starter, SysInfoPath);
        }
    } catch (...) {
        started = false; // every failure on the way ends in the message below
    }
    if (started)
        return;

    QMessageBox box(QMessageBox::NoIcon, programTitle(), sysInfoUnavailableText(), QMessageBox::Ok,
                    parent);
    box.exec();
}
