#include "platform/Numeric.h"
#include "platform/RuntimeError.h"
#include "support/TestSupport.h"

#include <QtTest>

class tst_Numeric : public QObject {
    Q_OBJECT

private slots:
    void conversions() {
        const std::pair<const char *, double> texts[] = {
            {"20 s", 20},   {"+7", 7}, {"-2.5x", -2.5}, {".5", 0.5}, {"  42", 42},
            {"1.2.3", 1.2}, {"", 0},   {"COM1", 0},     {"-", 0},    {".", 0}};
        for (const auto &[text, expected] : texts)
            QCOMPARE(leadingNumber(QString::fromLatin1(text)), expected);
        const std::pair<double, double> halves[] = {{0.5, 0},   {1.5, 2},   {2.5, 2},  {2.51, 3},
                                                    {-1.5, -2}, {-2.5, -2}, {-2.4, -2}};
        for (const auto &[value, expected] : halves)
            QCOMPARE(roundHalfEven(value), expected);

        QCOMPARE(toInt16(-32768.0), qint16(-32768));
        QCOMPARE(toInt16(32766.5), qint16(32766));
        QCOMPARE(textToInt16("1999"), qint16(1999));
        QCOMPARE(toInt32(2147483647.0), qint32(2147483647));
        QCOMPARE(add16(32766, 1), qint16(32767));
        QCOMPARE(sub16(0, 5), qint16(-5));
        const int overflow = RuntimeError::Overflow;
        QCOMPARE(errorNumber([] { toInt16(32767.5); }), overflow); // the half goes to 32768
        QCOMPARE(errorNumber([] { toInt16(-32768.6); }), overflow);
        QCOMPARE(errorNumber([] { textToInt16("99999999999999999999999"); }), overflow);
        QCOMPARE(errorNumber([] { toInt32(2147483648.0); }), overflow);
        QCOMPARE(errorNumber([] { add16(32767, 1); }), overflow);
        QCOMPARE(errorNumber([] { sub16(-32768, 1); }), overflow);
    }
};

QTEST_APPLESS_MAIN(tst_Numeric)
#include "tst_numeric.moc"
