#include "config/IniFile.h"

#include "platform/TextLines.h"

#include <QFile>
#include <QFileInfo>
#include <optional>

namespace {

void say(ConfigProblem *why, ConfigProblem::Kind kind, const QString &found = QString()) {
    if (!why)
        return;
    why->kind = kind;
    why->found = found;
}

// The bytes of a file the reader takes: a regular file of at most MaxIniFileSize.
std::optional<QByteArray> readFile(const QString &fileName, ConfigProblem *why) {
    using Kind = ConfigProblem::Kind;
    const QFileInfo info(fileName);
    if (!info.isFile()) {
        say(why, info.exists() ? Kind::NotAFile : Kind::FileMissing);
        return std::nullopt;
    }
    if (info.size() > MaxIniFileSize) {
        say(why, Kind::TooLarge, QString::number(info.size()));
        return std::nullopt;
    }
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        say(why, Kind::Unreadable, file.errorString());
        return std::nullopt;
    }
    // One byte more than the size found: a file that has grown since is seen to.
    QByteArray bytes = file.read(qMin(file.size(), MaxIniFileSize) + 1);
    if (file.error() != QFileDevice::NoError) {
        say(why, Kind::Unreadable, file.errorString());
        return std::nullopt;
    }
    if (bytes.size() > MaxIniFileSize) {
        say(why, Kind::TooLarge, QString::number(bytes.size()));
        return std::nullopt;
    }
    return bytes;
}

struct Lookup {
    qsizetype header = -1; // index of the section's line
    qsizetype key = -1;    // index of the key's line
    QString value;
};

// The reader's own rule: the first "[Section]", then its lines up to the next "[".
Lookup lookup(const QList<QByteArrayView> &lines, const QString &header, const QString &key) {
    Lookup found;
    qsizetype i = 0;
    for (; i < lines.size(); ++i) {
        const QByteArrayView line = withoutBom(lines[i], i == 0);
        if (line.startsWith('[') && decodeLine(line).toUpper() == header)
            break;
    }
    if (i == lines.size())
        return found;
    found.header = i;
    for (++i; i < lines.size(); ++i) {
        const QByteArrayView line = lines[i];
        if (line.startsWith('['))
            return found;
        const qsizetype equals = line.indexOf('=');
        if (equals < 0)
            continue;
        if (decodeLine(line.first(equals)).toUpper() == key) {
            found.key = i;
            found.value = decodeLine(line.sliced(equals + 1));
            return found;
        }
    }
    return found;
}

// Text upper-cased without any blank: what a technician meant.
QString meant(QByteArrayView bytes) {
    QString text = decodeLine(bytes).toUpper();
    text.removeIf([](QChar c) { return c.isSpace(); });
    return text;
}

bool meansKey(QByteArrayView line, const QString &key) {
    const qsizetype equals = line.indexOf('=');
    return equals >= 0 && meant(line.first(equals)) == key;
}

// Why the reader's rule found nothing: binary bytes, or the near miss a technician
// writes (blanks around a name, a key in a repeated section), or plainly missing.
void diagnose(const QByteArray &bytes, const QList<QByteArrayView> &lines, const QString &header,
              const QString &key, const Lookup &found, ConfigProblem &why) {
    using Kind = ConfigProblem::Kind;
    const auto at = [&](Kind kind, qsizetype index) {
        why.kind = kind;
        why.line = int(index + 1);
        why.found = decodeLine(withoutBom(lines[index], index == 0));
    };
    if (bytes.contains('\0'))
        return void(why.kind = Kind::Binary);
    if (found.header < 0) {
        for (qsizetype i = 0; i < lines.size(); ++i) {
            if (meant(withoutBom(lines[i], i == 0)) == header)
                return at(Kind::SectionBlanks, i);
        }
        return void(why.kind = Kind::SectionMissing);
    }
    qsizetype i = found.header + 1;
    for (; i < lines.size() && !lines[i].startsWith('['); ++i) {
        if (meansKey(lines[i], key))
            return at(Kind::KeyBlanks, i);
    }
    bool repeat = false;
    for (; i < lines.size(); ++i) {
        if (lines[i].startsWith('['))
            repeat = decodeLine(lines[i]).toUpper() == header;
        else if (repeat && meansKey(lines[i], key)) {
            at(Kind::KeyInRepeat, i);
            why.sectionLine = int(found.header + 1);
            return;
        }
    }
    why.kind = Kind::KeyMissing;
    why.line = int(found.header + 1);
    why.found.clear();
}

} // namespace

bool ReadIniKey(const QString &Section, const QString &Key, QString &Value, const QString &FileName,
                ConfigProblem *why) {
    try {
        Value.clear();
        if (why) {
            *why = ConfigProblem();
            why->section = Section;
            why->key = Key;
        }
        if (Section.isEmpty() || Key.isEmpty() || FileName.isEmpty()) {
            say(why, ConfigProblem::Kind::KeyMissing);
            return false;
        }
        const std::optional<QByteArray> bytes = readFile(FileName, why);
        if (!bytes)
            return false;
        const QList<QByteArrayView> lines = splitLines(*bytes);
        const QString header = u'[' + Section.toUpper() + u']';
        const QString wantedKey = Key.toUpper();
        const Lookup found = lookup(lines, header, wantedKey);
        if (found.key >= 0) {
            Value = found.value;
            if (why) {
                why->line = int(found.key + 1);
                why->found = Value;
            }
            return true;
        }
        if (why)
            diagnose(*bytes, lines, header, wantedKey, found, *why);
        return false;
    } catch (...) {
        Value.clear();
        say(why, ConfigProblem::Kind::Unreadable);
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
