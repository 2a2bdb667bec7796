#pragma once

#include <QHash>
#include <QString>

// String resources by numeric id: the language table compiled into the program
// (ids 101-156 French, 201-256 English). Its data lives in resources/.
class LanguageTable {
public:
    // Reads the table compiled in from resources/language.txt.
    LanguageTable();
    // Reads a table in the same format from another file (tests).
    explicit LanguageTable(const QString &path);

    // The text of an id; a missing id raises RuntimeError (resource not found).
    QString text(int id) const;
    bool contains(int id) const { return texts_.contains(id); }

private:
    QHash<int, QString> texts_;
};
