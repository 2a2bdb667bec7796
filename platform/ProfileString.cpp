#include "platform/ProfileString.h"

#include "platform/TextLines.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {
const QByteArray LineEnd("\r\n");

bool writable(const QFileInfo &info) {
    return info.isWritable() && (info.permissions() & QFileDevice::WriteOwner);
}

bool oneLine(const QString &text) {
    return !text.contains(u'\r') && !text.contains(u'\n');
}

// The name part of a key line ("Name=value" -> "Name"), or nothing for a line
// without "=".
bool keyName(QByteArrayView line, QByteArrayView &name) {
    const qsizetype equals = line.indexOf('=');
    if (equals < 0)
        return false;
    name = line.first(equals);
    return true;
}

QByteArray rewritten(const QByteArray &existing, const QString &section, const QString &key,
                     const QString &value) {
    const QList<QByteArrayView> lines = splitLines(existing);
    const QString header = u'[' + section.toUpper() + u']';
    const QString wantedKey = key.toUpper();
    const QByteArray newKeyLine = key.toUtf8() + '=' + value.toUtf8();

    qsizetype headerLine = -1;
    for (qsizetype i = 0; i < lines.size() && headerLine < 0; ++i) {
        const QByteArrayView line = withoutBom(lines[i], i == 0);
        if (line.startsWith('[') && decodeLine(line).toUpper() == header)
            headerLine = i;
    }

    // Where the key's line goes: replacing line `replace`, or inserted before line
    // `insertAt`.
    qsizetype replace = -1;
    qsizetype insertAt = lines.size();
    if (headerLine >= 0) {
        insertAt = headerLine + 1;
        for (qsizetype i = headerLine + 1; i < lines.size(); ++i) {
            if (lines[i].startsWith('['))
                break;
            QByteArrayView name;
            if (!keyName(lines[i], name))
                continue;
            if (decodeLine(name).toUpper() == wantedKey) {
                replace = i;
                break;
            }
            insertAt = i + 1;
        }
    }

    QByteArray out;
    out.reserve(existing.size() + newKeyLine.size() + section.size() + 8);
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (i == insertAt && replace < 0)
            out += newKeyLine + LineEnd;
        if (i == replace) {
            QByteArrayView name;
            keyName(lines[i], name);
            // The name keeps its spelling in the file; only the value changes.
            out += name.toByteArray() + '=' + value.toUtf8() + LineEnd;
        } else {
            out += lines[i].toByteArray() + LineEnd;
        }
    }
    if (headerLine < 0)
        out += '[' + section.toUtf8() + ']' + LineEnd;
    if (insertAt == lines.size() && replace < 0)
        out += newKeyLine + LineEnd;
    return out;
}
} // namespace

bool CanReplaceFile(const QString &fileName) {
    const QFileInfo file(fileName);
    const QFileInfo folder(file.absolutePath());
    if (!folder.isDir() || !writable(folder))
        return false;
    return !file.exists() || (file.isFile() && writable(file));
}

bool WritePrivateProfileString(const QString &section, const QString &key, const QString &value,
                               const QString &fileName) {
    try {
        // A key with "=" or a leading "[", or text with a line break, would not read
        // back as the same section, key and value.
        if (section.isEmpty() || key.isEmpty() || fileName.isEmpty() || !oneLine(section) ||
            !oneLine(key) || !oneLine(value) || key.contains(u'=') || key.startsWith(u'['))
            return false;
        if (!CanReplaceFile(fileName))
            return false;

        QByteArray existing;
        const bool exists = QFileInfo::exists(fileName);
        if (exists) {
            QFile in(fileName);
            if (!in.open(QIODevice::ReadOnly))
                return false;
            existing = in.readAll();
            if (in.error() != QFileDevice::NoError)
                return false;
        }

        const QByteArray bytes = rewritten(existing, section, key, value);
        // The file already reads so: a rewrite would change nothing but still cost a
        // flush to disk, and start-up rewrites every key of "Setup.ini" each time.
        if (exists && bytes == existing)
            return true;
        QSaveFile out(fileName);
        if (!out.open(QIODevice::WriteOnly))
            return false;
        if (out.write(bytes) != bytes.size())
            return false; // the temporary file is discarded; the old file stays
        return out.commit();
    } catch (...) {
        return false;
    }
}
