#include "platform/TextLines.h"

QList<QByteArrayView> splitLines(QByteArrayView bytes) {
    QList<QByteArrayView> lines;
    const qsizetype n = bytes.size();
    qsizetype start = 0;
    for (qsizetype i = 0; i < n; ++i) {
        const char c = bytes[i];
        if (c != '\r' && c != '\n')
            continue;
        lines.append(bytes.sliced(start, i - start));
        if (c == '\r' && i + 1 < n && bytes[i + 1] == '\n')
            ++i;
        start = i + 1;
    }
    if (start < n)
        lines.append(bytes.sliced(start));
    return lines;
}

namespace {
// Length of the valid UTF-8 sequence at bytes[i], or 0 when the byte there does not
// start one (stray continuation byte, overlong form, surrogate, beyond U+10FFFF,
// truncated sequence).
qsizetype utf8SequenceAt(QByteArrayView bytes, qsizetype i, char32_t &codePoint) {
    const auto byte = [&](qsizetype k) { return static_cast<unsigned char>(bytes[k]); };
    const unsigned char lead = byte(i);
    qsizetype length;
    char32_t value;
    char32_t minimum;
    if (lead < 0x80) {
        codePoint = lead;
        return 1;
    } else if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        value = lead & 0x1F;
        minimum = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        value = lead & 0x0F;
        minimum = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        value = lead & 0x07;
        minimum = 0x10000;
    } else {
        return 0;
    }
    if (i + length > bytes.size())
        return 0;
    for (qsizetype k = 1; k < length; ++k) {
        const unsigned char next = byte(i + k);
        if ((next & 0xC0) != 0x80)
            return 0;
        value = (value << 6) | (next & 0x3F);
    }
    if (value < minimum || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
        return 0;
    codePoint = value;
    return length;
}
} // namespace

QString decodeLine(QByteArrayView bytes) {
    QString text;
    text.reserve(bytes.size());
    qsizetype i = 0;
    while (i < bytes.size()) {
        char32_t codePoint = 0;
        const qsizetype length = utf8SequenceAt(bytes, i, codePoint);
        if (length == 0) {
            text.append(QChar(static_cast<unsigned char>(bytes[i])));
            ++i;
            continue;
        }
        if (codePoint > 0xFFFF) {
            text.append(QChar(QChar::highSurrogate(codePoint)));
            text.append(QChar(QChar::lowSurrogate(codePoint)));
        } else {
            text.append(QChar(char16_t(codePoint)));
        }
        i += length;
    }
    return text;
}
