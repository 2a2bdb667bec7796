#pragma once

#include <QHash>
#include <QString>
#include <utility>

// The texts of our own, beyond the design's language table, in English and French:
// a second table (resources/own-texts.txt) so that the design's stays as it is.
class OwnTexts {
public:
    enum Language { English, French };

    // Reads the table compiled in.
    OwnTexts();

    // The text of a key with %1, %2, ... filled in; a missing key raises RuntimeError.
    template <typename... Args>
    QString operator()(Language language, const char *key, Args &&...args) const {
        if constexpr (sizeof...(Args) == 0)
            return text(language, key);
        else
            return text(language, key).arg(std::forward<Args>(args)...);
    }
    QString text(Language language, const char *key) const;

private:
    QHash<QString, std::pair<QString, QString>> texts_;
};
