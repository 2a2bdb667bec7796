#include "platform/Numeric.h"

#include "platform/RuntimeError.h"

#include <cmath>
#include <limits>

double leadingNumber(const QString &text) {
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n && (text[i] == u' ' || text[i] == u'\t'))
        ++i;
    QByteArray number;
    if (i < n && (text[i] == u'+' || text[i] == u'-'))
        number.append(char(text[i++].unicode()));
    bool digits = false;
    auto takeDigits = [&] {
        while (i < n && text[i] >= u'0' && text[i] <= u'9') {
            number.append(char(text[i++].unicode()));
            digits = true;
        }
    };
    takeDigits();
    if (i < n && text[i] == u'.') {
        number.append('.');
        ++i;
        takeDigits();
    }
    if (!digits)
        return 0.0;
    bool ok = false;
    const double value = QString::fromLatin1(number).toDouble(&ok);
    // A run of digits too long for a double still reads as a huge number, which
    // the conversions below turn into an overflow.
    if (!ok)
        return number.startsWith('-') ? -std::numeric_limits<double>::infinity()
                                      : std::numeric_limits<double>::infinity();
    return value;
}

double roundHalfEven(double value) {
    if (!std::isfinite(value))
        return value;
    const double floor = std::floor(value);
    const double diff = value - floor;
    if (diff < 0.5)
        return floor;
    if (diff > 0.5)
        return floor + 1.0;
    return std::fmod(floor, 2.0) == 0.0 ? floor : floor + 1.0;
}

namespace {
template <typename T> T toRangeChecked(double value) {
    const double rounded = roundHalfEven(value);
    if (!std::isfinite(rounded) || rounded < double(std::numeric_limits<T>::min()) ||
        rounded > double(std::numeric_limits<T>::max()))
        throw RuntimeError::overflow();
    return static_cast<T>(rounded);
}

qint16 checked16(int value) {
    if (value < std::numeric_limits<qint16>::min() || value > std::numeric_limits<qint16>::max())
        throw RuntimeError::overflow();
    return static_cast<qint16>(value);
}
} // namespace

qint16 toInt16(double value) {
    return toRangeChecked<qint16>(value);
}

qint32 toInt32(double value) {
    return toRangeChecked<qint32>(value);
}

qint16 textToInt16(const QString &text) {
    return toInt16(leadingNumber(text));
}

qint16 add16(qint16 a, qint16 b) {
    return checked16(int(a) + int(b));
}

qint16 sub16(qint16 a, qint16 b) {
    return checked16(int(a) - int(b));
}
