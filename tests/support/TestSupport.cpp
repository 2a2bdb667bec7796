#include "support/TestSupport.h"

#include "platform/RuntimeError.h"

#include <QFile>

ProgramFolder::ProgramFolder() = default;

QByteArray ProgramFolder::read(const QString &name) const {
    QFile f(file(name));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void ProgramFolder::write(const QString &name, const QByteArray &bytes) const {
    QFile f(file(name));
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(bytes);
}

QByteArray referenceFile(const QString &name) {
    QFile f(QStringLiteral(NORVALE_REFERENCE_DIR "/") + name);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

int errorNumber(const std::function<void()> &call) {
    try {
        call();
    } catch (const RuntimeError &e) {
        return e.number();
    }
    return 0;
}
