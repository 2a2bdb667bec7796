#include "cli/Console.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace {
void write(std::FILE *stream, const QString &text) {
    const QByteArray bytes = text.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stream);
}
} // namespace

Console::Console(OwnTexts::Language language)
    : words_(language)
    , terminal_(::isatty(STDERR_FILENO) == 1) {}

void Console::out(const QString &text) const {
    write(stdout, text);
}

void Console::err(const QString &text) const {
    std::fflush(stdout);
    write(stderr, text);
}

void Console::progress(const QString &text) {
    if (!terminal_)
        return;
    // One line, written over: carriage return, the text, the rest of the line cleared.
    const QByteArray bytes = "\r" + text.toUtf8() + "\x1b[K";
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stderr);
    std::fflush(stderr);
    progressShown_ = true;
}

void Console::endProgress() {
    if (!progressShown_)
        return;
    std::fputs("\r\x1b[K", stderr);
    std::fflush(stderr);
    progressShown_ = false;
}

QStringList Console::aligned(const QList<QStringList> &rows) {
    QList<qsizetype> widths;
    for (const QStringList &row : rows) {
        for (qsizetype c = 0; c + 1 < row.size(); ++c) {
            if (widths.size() <= c)
                widths.append(0);
            widths[c] = std::max(widths[c], row[c].size());
        }
    }
    QStringList lines;
    for (const QStringList &row : rows) {
        QString line;
        for (qsizetype c = 0; c < row.size(); ++c)
            line += c + 1 < row.size() ? row[c].leftJustified(widths[c] + 2) : row[c];
        while (line.endsWith(u' '))
            line.chop(1);
        lines.append(line);
    }
    return lines;
}

void Console::table(const QList<QStringList> &rows) const {
    for (const QString &line : aligned(rows))
        out(line);
}
