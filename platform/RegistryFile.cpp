#include "platform/RegistryFile.h"

#include <QFile>
#include <QStringDecoder>
#include <QStringList>
#include <algorithm>
#include <optional>

namespace {

struct RootName {
    QLatin1StringView name;
    RegistryFile::Root root;
};

constexpr RootName kRoots[] = {
    {QLatin1StringView("HKEY_CLASSES_ROOT"), RegistryFile::Root::ClassesRoot},
    {QLatin1StringView("HKEY_CURRENT_USER"), RegistryFile::Root::CurrentUser},
    {QLatin1StringView("HKEY_LOCAL_MACHINE"), RegistryFile::Root::LocalMachine},
    {QLatin1StringView("HKEY_USERS"), RegistryFile::Root::Users},
    {QLatin1StringView("HKEY_CURRENT_CONFIG"), RegistryFile::Root::CurrentConfig},
};

QString rootName(RegistryFile::Root root) {
    for (const RootName &r : kRoots)
        if (r.root == root)
            return r.name.toString();
    return {};
}

std::optional<RegistryFile::Root> rootFromName(QStringView name) {
    for (const RootName &r : kRoots)
        if (name.compare(r.name, Qt::CaseInsensitive) == 0)
            return r.root;
    return std::nullopt;
}

QString fold(QStringView s) {
    return s.toString().toCaseFolded();
}

// The file's text. A byte-order mark says the encoding; without one the text is
// UTF-8, or Latin-1 when it is not valid UTF-8 (an old export in a Western code page).
QString decode(const QByteArray &bytes) {
    const auto bom = QStringConverter::encodingForData(bytes);
    if (bom && *bom != QStringConverter::Utf8) {
        QStringDecoder decoder(*bom);
        return decoder(bytes);
    }
    QStringDecoder utf8(QStringConverter::Utf8);
    QString text = utf8(bytes);
    if (utf8.hasError())
        return QString::fromLatin1(bytes);
    return text;
}

QStringList splitLines(const QString &text) {
    QStringList lines;
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'\n' && text[i] != u'\r')
            continue;
        lines.append(text.mid(start, i - start));
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            ++i;
        start = i + 1;
    }
    if (start < text.size())
        lines.append(text.mid(start));
    return lines;
}

int hexDigit(QChar c) {
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'a' && u <= u'f')
        return u - u'a' + 10;
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    return -1;
}

// 1 to `maxDigits` hexadecimal digits and nothing else.
std::optional<quint32> parseHex(QStringView digits, int maxDigits) {
    if (digits.isEmpty() || digits.size() > maxDigits)
        return std::nullopt;
    quint32 value = 0;
    for (QChar c : digits) {
        const int d = hexDigit(c);
        if (d < 0)
            return std::nullopt;
        value = value * 16 + quint32(d);
    }
    return value;
}

// A quoted text starting at line[pos], with \\ and \" as its only escapes; pos ends
// after the closing quote.
bool readQuoted(QStringView line, qsizetype &pos, QString &out) {
    if (pos >= line.size() || line[pos] != u'"')
        return false;
    ++pos;
    out.clear();
    while (pos < line.size()) {
        const QChar c = line[pos++];
        if (c == u'"')
            return true;
        if (c == u'\\') {
            if (pos >= line.size() || (line[pos] != u'\\' && line[pos] != u'"'))
                return false;
            out.append(line[pos++]);
        } else {
            out.append(c);
        }
    }
    return false;
}

void skipBlanks(QStringView line, qsizetype &pos) {
    while (pos < line.size() && (line[pos] == u' ' || line[pos] == u'\t'))
        ++pos;
}

// What follows the data: nothing, or a comment.
bool onlyCommentLeft(QStringView rest) {
    rest = rest.trimmed();
    return rest.isEmpty() || rest.startsWith(u';');
}

QStringView withoutComment(QStringView data) {
    const qsizetype semicolon = data.indexOf(u';');
    return (semicolon < 0 ? data : data.left(semicolon)).trimmed();
}

bool isStringType(quint32 type) {
    return type == RegistryFile::REG_SZ || type == RegistryFile::REG_EXPAND_SZ ||
           type == RegistryFile::REG_MULTI_SZ;
}

// "hex:01,02" or "hex(N):01,02" (the "hex" already checked), bytes as given.
std::optional<RegistryFile::Value> parseHexData(QStringView data) {
    RegistryFile::Value value;
    qsizetype pos = 3;
    if (pos < data.size() && data[pos] == u'(') {
        const qsizetype close = data.indexOf(u')', pos);
        if (close < 0)
            return std::nullopt;
        const auto type = parseHex(data.mid(pos + 1, close - pos - 1), 8);
        if (!type)
            return std::nullopt;
        value.type = *type;
        pos = close + 1;
    } else {
        value.type = RegistryFile::REG_BINARY;
    }
    if (pos >= data.size() || data[pos] != u':')
        return std::nullopt;
    const QStringView list = withoutComment(data.mid(pos + 1));
    if (list.isEmpty())
        return value;
    const auto items = list.split(u',');
    for (qsizetype i = 0; i < items.size(); ++i) {
        const QStringView item = items[i].trimmed();
        if (item.isEmpty() && i == items.size() - 1)
            break; // a trailing comma, as before a continued line
        const auto byte = parseHex(item, 2);
        if (!byte)
            return std::nullopt;
        value.data.append(char(*byte));
    }
    return value;
}

} // namespace

RegistryFile::Status RegistryFile::Key::queryValue(const QString &name, quint32 &type,
                                                   QByteArray &buffer, quint32 &size) const {
    if (!values_)
        return FileNotFound;
    const auto it = values_->constFind(fold(name));
    if (it == values_->constEnd())
        return FileNotFound;
    const quint32 needed = quint32(it->data.size());
    type = it->type;
    if (needed > size) {
        size = needed;
        return MoreData;
    }
    if (quint32(buffer.size()) < size)
        buffer.resize(qsizetype(size));
    std::copy(it->data.cbegin(), it->data.cend(), buffer.begin());
    size = needed;
    return Success;
}

RegistryFile::RegistryFile(const QString &path) {
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        parse(file.readAll());
}

RegistryFile RegistryFile::fromBytes(const QByteArray &contents) {
    RegistryFile registry;
    registry.parse(contents);
    return registry;
}

QString RegistryFile::keyId(Root root, const QString &subKey, bool *valid) {
    *valid = true;
    QString id = rootName(root);
    if (subKey.isEmpty())
        return id;
    for (QStringView part : QStringView(subKey).split(u'\\')) {
        if (part.isEmpty()) {
            *valid = false;
            return {};
        }
        id += u'\\';
        id += fold(part);
    }
    return id;
}

RegistryFile::Status RegistryFile::openKey(Root root, const QString &subKey, Key &key) const {
    key = Key();
    bool valid = false;
    const QString id = keyId(root, subKey, &valid);
    if (!valid || (!subKey.isEmpty() && !keys_.contains(id)))
        return FileNotFound;
    const auto it = values_.constFind(id);
    key = Key(it == values_.constEnd() ? &noValues_ : &*it);
    return Success;
}

void RegistryFile::parse(const QByteArray &contents) {
    const QStringList lines = splitLines(decode(contents));
    qsizetype i = 0;
    while (i < lines.size() && lines[i].trimmed().isEmpty())
        ++i;
    if (i == lines.size())
        return;
    // Without its header line the file is not an export at all: nothing in it counts.
    const QString header = lines[i++].trimmed();
    bool version5 = false;
    if (header == QLatin1StringView("Windows Registry Editor Version 5.00"))
        version5 = true;
    else if (header != QLatin1StringView("REGEDIT4"))
        return;

    QString current; // the folded id of the section's key; empty: values go nowhere
    for (; i < lines.size(); ++i) {
        QString line = lines[i].trimmed();
        if (line.isEmpty() || line.startsWith(u';'))
            continue;

        if (line.startsWith(u'[')) {
            current.clear();
            const qsizetype close = line.lastIndexOf(u']');
            if (close < 0)
                continue;
            QStringView path = QStringView(line).mid(1, close - 1);
            const bool remove = path.startsWith(u'-');
            if (remove)
                path = path.mid(1);
            const qsizetype slash = path.indexOf(u'\\');
            const auto root = rootFromName(slash < 0 ? path : path.left(slash));
            if (!root)
                continue;
            bool valid = false;
            const QString subKey = slash < 0 ? QString() : path.mid(slash + 1).toString();
            const QString id = keyId(*root, subKey, &valid);
            if (!valid)
                continue;
            if (remove) {
                const QString below = id + u'\\';
                keys_.removeIf([&](const QString &k) { return k == id || k.startsWith(below); });
                values_.removeIf([&](const QHash<QString, QHash<QString, Value>>::iterator &it) {
                    return it.key() == id || it.key().startsWith(below);
                });
                continue;
            }
            // A key brings its parents into being, as in the registry itself.
            for (qsizetype cut = id.indexOf(u'\\'); cut >= 0; cut = id.indexOf(u'\\', cut + 1))
                keys_.insert(id.left(cut));
            keys_.insert(id);
            current = id;
            continue;
        }

        if (current.isEmpty())
            continue;

        qsizetype pos = 0;
        QString name;
        if (line.startsWith(u'@'))
            pos = 1; // the key's default value, whose name is empty
        else if (!readQuoted(line, pos, name))
            continue;
        skipBlanks(line, pos);
        if (pos >= line.size() || line[pos] != u'=')
            continue;
        ++pos;
        skipBlanks(line, pos);

        // Only byte lists run on over several lines, each but the last ending in "\".
        if (QStringView(line).mid(pos).startsWith(u"hex", Qt::CaseInsensitive)) {
            while (line.endsWith(u'\\') && i + 1 < lines.size()) {
                line.chop(1);
                line += lines[++i].trimmed();
            }
        }
        const QStringView data = QStringView(line).mid(pos);

        std::optional<Value> value;
        if (data.startsWith(u'-')) {
            if (onlyCommentLeft(data.mid(1)))
                values_[current].remove(fold(name));
            continue;
        }
        if (data.startsWith(u'"')) {
            qsizetype end = 0;
            QString text;
            if (readQuoted(data, end, text) && onlyCommentLeft(data.mid(end)))
                value = Value{REG_SZ, text.toUtf8() + '\0'};
        } else if (data.startsWith(u"dword:", Qt::CaseInsensitive)) {
            if (const auto number = parseHex(withoutComment(data.mid(6)), 8)) {
                QByteArray bytes(4, '\0');
                for (int b = 0; b < 4; ++b)
                    bytes[b] = char((*number >> (8 * b)) & 0xff);
                value = Value{REG_DWORD, bytes};
            }
        } else if (data.startsWith(u"hex", Qt::CaseInsensitive)) {
            value = parseHexData(data);
            // A version 5 export holds strings written as bytes in UTF-16; they are
            // handed out in the same narrow form as every other string.
            if (value && version5 && isStringType(value->type) && value->data.size() % 2 == 0) {
                QString text;
                for (qsizetype b = 0; b < value->data.size(); b += 2)
                    text.append(
                        QChar(char16_t(quint8(value->data[b]) | quint8(value->data[b + 1]) << 8)));
                value->data = text.toUtf8();
            }
        }
        if (value)
            values_[current].insert(fold(name), *value);
    }
}
