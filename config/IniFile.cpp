#include "config/IniFile.h"

#include "platform/TextLines.h"

#include <QFile>
#include <QFileInfo>

bool ReadIniKey(const QString &Section, const QString &Key, QString &Value,
                const QString &FileName) {
    try {
        Value.clear();
        if (Section.isEmpty() || Key.isEmpty() || FileName.isEmpty())
            return false;
        const QFileInfo info(FileName);
        if (!info.isFile() || info.size() > MaxIniFileSize)
            return false;
        QFile file(FileName);
        if (!file.open(QIODevice::ReadOnly))
            return false;
        // One byte more than the size found: a file that has grown since is seen to.
        const QByteArray bytes = file.read(qMin(file.size(), MaxIniFileSize) + 1);
        if (file.error() != QFileDevice::NoError || bytes.size() > MaxIniFileSize)
            return false;
        file.close();

        const QList<QByteArrayView> lines = splitLines(bytes);
        const QString header = u'[' + Section.toUpper() + u']';
        const QString wantedKey = Key.toUpper();
        qsizetype i = 0;
        for (; i < lines.size(); ++i) {
            const QByteArrayView line = withoutBom(lines[i], i == 0);
            if (line.startsWith('[') && decodeLine(line).toUpper() == header)
                break;
        }
        for (++i; i < lines.size(); ++i) {
            const QByteArrayView line = lines[i];
            if (line.startsWith('['))
                return false;
            const qsizetype equals = line.indexOf('=');
            if (equals < 0)
                continue;
            if (decodeLine(line.first(equals)).toUpper() == wantedKey) {
                Value = decodeLine(line.sliced(equals + 1));
                return true;
            }
        }
        return false;
    } catch (...) {
        Value.clear();
        return false;
    }
}

bool IsDigitString(const QString &Text) {
    if (Text.isEmpty())
        return false;
    for (const QChar c : Text) {
        if (c < u'0' || c > u'9')
            return false;
    }
    return true;
}
