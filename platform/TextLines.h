#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

// The line input of the configuration files, shared by the profile writer and the
// configuration reader so that both see the same lines with the same text.

// The lines of a file's bytes, without their ends. A line ends at CR LF, LF or CR;
// a line end at the very end of the bytes does not start an empty last line.
// The views point into bytes.
QList<QByteArrayView> splitLines(QByteArrayView bytes);

// The text of a line: UTF-8 where the bytes are valid UTF-8, each byte that is
// not part of a valid UTF-8 sequence taken as Latin-1.
QString decodeLine(QByteArrayView bytes);

// The UTF-8 byte order mark, which an editor may put before the first line.
inline constexpr QByteArrayView Utf8Bom("\xEF\xBB\xBF", 3);

// The bytes of a line as they take part in matching: without the byte order mark
// when it is the file's first line.
inline QByteArrayView withoutBom(QByteArrayView line, bool firstLine) {
    return firstLine && line.startsWith(Utf8Bom) ? line.sliced(Utf8Bom.size()) : line;
}
