#pragma once

#include <QString>
#include <QtGlobal>

// The numeric run-time conventions every conversion of the program goes through:
// the leading-number parser, rounding half to even, and 16/32-bit integers that
// raise the overflow error instead of wrapping.

// The leading decimal number of a text (blanks before it skipped, optional sign,
// digits, optional decimal point): "20 s" -> 20, "12a" -> 12, "-1.5x" -> -1.5,
// text without a leading number -> 0.
double leadingNumber(const QString &text);

// Nearest integer, halves to the even neighbour: 2.5 -> 2, 3.5 -> 4, -0.5 -> 0.
double roundHalfEven(double value);

// Rounded half to even; raises RuntimeError::overflow() outside the 16-bit range.
qint16 toInt16(double value);
// Rounded half to even; raises RuntimeError::overflow() outside the 32-bit range.
qint32 toInt32(double value);

// The leading number of a text, rounded to 16 bits (raises on overflow).
qint16 textToInt16(const QString &text);

// 16-bit signed arithmetic that raises the overflow error.
qint16 add16(qint16 a, qint16 b);
qint16 sub16(qint16 a, qint16 b);
