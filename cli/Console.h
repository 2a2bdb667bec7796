#pragma once

#include "commissioning/Wording.h"

#include <QList>
#include <QString>
#include <QStringList>

// Where norvale-cli speaks: results on standard output, messages on standard error,
// and progress on standard error only when a person watches it there.
class Console {
public:
    explicit Console(OwnTexts::Language language);

    const Wording &words() const { return words_; }
    template <typename... Args> QString operator()(const char *key, const Args &...args) const {
        return words_(key, args...);
    }

    void out(const QString &text) const;
    void err(const QString &text) const;
    void progress(const QString &text);
    void endProgress();

    // Rows whose columns are padded to one width each; the last column is not padded.
    static QStringList aligned(const QList<QStringList> &rows);
    void table(const QList<QStringList> &rows) const;

private:
    Wording words_;
    bool terminal_;
    bool progressShown_ = false;
};
