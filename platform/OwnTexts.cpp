#include "platform/OwnTexts.h"

#include "platform/RuntimeError.h"

#include <QFile>

// Each line: the key, then two texts between double quotes; lines starting with "#"
// are comments.
OwnTexts::OwnTexts() {
    QFile file(QStringLiteral(":/resources/own-texts.txt"));
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QString all = QString::fromUtf8(file.readAll());
    for (QStringView line : QStringView(all).split(u'\n')) {
        if (line.startsWith(u'#'))
            continue;
        const QList<QStringView> parts = line.split(u'"');
        // key, English, separator, French, rest
        if (parts.size() < 5)
            continue;
        texts_.insert(parts[0].trimmed().toString(), {parts[1].toString(), parts[3].toString()});
    }
}

QString OwnTexts::text(Language language, const char *key) const {
    const auto it = texts_.constFind(QLatin1String(key));
    if (it == texts_.constEnd())
        throw RuntimeError(RuntimeError::ResourceNotFound,
                           QStringLiteral("Text '%1' not found").arg(QLatin1String(key)));
    return language == French ? it->second : it->first;
}
