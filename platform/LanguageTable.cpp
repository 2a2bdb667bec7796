#include "platform/LanguageTable.h"

#include "platform/RuntimeError.h"

#include <QFile>

// Each line of the table: the id, blanks, then the text between the first and
// the last double quote, so that leading and trailing blanks survive any editor.
LanguageTable::LanguageTable()
    : LanguageTable(QStringLiteral(":/resources/language.txt")) {}

LanguageTable::LanguageTable(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QString all = QString::fromUtf8(file.readAll());
    for (QStringView line : QStringView(all).split(u'\n')) {
        const qsizetype first = line.indexOf(u'"');
        const qsizetype last = line.lastIndexOf(u'"');
        if (first < 0 || last <= first)
            continue;
        bool ok = false;
        const int id = line.left(first).trimmed().toInt(&ok);
        if (ok)
            texts_.insert(id, line.mid(first + 1, last - first - 1).toString());
    }
}

QString LanguageTable::text(int id) const {
    const auto it = texts_.constFind(id);
    if (it == texts_.constEnd())
        throw RuntimeError(RuntimeError::ResourceNotFound,
                           QStringLiteral("Resource with identifier '%1' not found").arg(id));
    return *it;
}
