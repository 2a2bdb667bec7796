#pragma once

#include "platform/OwnTexts.h"

#include <concepts>

// Our own texts in one language, for what commissioning tells a technician. Numbers
// fill a text's %1, %2 ... as their decimal text.
class Wording {
public:
    explicit Wording(OwnTexts::Language language)
        : language_(language) {}

    template <typename... Args> QString operator()(const char *key, const Args &...args) const {
        if constexpr (sizeof...(Args) == 0)
            return texts_.text(language_, key);
        else
            return texts_.text(language_, key).arg(asText(args)...);
    }
    OwnTexts::Language language() const { return language_; }

private:
    static QString asText(const QString &text) { return text; }
    template <std::integral Number> static QString asText(Number number) {
        return QString::number(number);
    }

    OwnTexts texts_;
    OwnTexts::Language language_;
};
