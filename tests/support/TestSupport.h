#pragma once

#include <QString>
#include <QTemporaryDir>
#include <functional>

// A scratch program folder per test: "Setup.ini" and configuration files go there.
class ProgramFolder {
public:
    ProgramFolder();
    QString path() const { return dir_.path(); }
    QString file(const QString &name) const { return dir_.filePath(name); }
    QByteArray read(const QString &name) const;
    void write(const QString &name, const QByteArray &bytes) const;

private:
    QTemporaryDir dir_;
};

// The bytes of a file of tests/data.
QByteArray referenceFile(const QString &name);

// The number of the run-time error a call raises, 0 when it raises none.
int errorNumber(const std::function<void()> &call);
