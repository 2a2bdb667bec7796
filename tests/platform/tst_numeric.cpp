#include "platform/Numeric.h"
#include "platform/RuntimeError.h"

#include <QtTest>

class tst_Numeric : public QObject {
    Q_OBJECT

private slots:
    void leadingNumber_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("expected");
        QTest::newRow("plain") << "38400" << 38400.0;
        QTest::newRow("unit after") << "20 s" << 20.0;
        QTest::newRow("letters after") << "12a" << 12.0;
        QTest::newRow("negative") << "-5" << -5.0;
        QTest::newRow("plus") << "+7" << 7.0;
        QTest::newRow("decimal") << "2.5x" << 2.5;
        QTest::newRow("leading point") << ".5" << 0.5;
        QTest::newRow("leading blanks") << "  42" << 42.0;
        QTest::newRow("empty") << "" << 0.0;
        QTest::newRow("letters first") << "COM1" << 0.0;
        QTest::newRow("sign only") << "-" << 0.0;
        QTest::newRow("point only") << "." << 0.0;
        QTest::newRow("second point stops") << "1.2.3" << 1.2;
    }
    void leadingNumber() {
        QFETCH(QString, text);
        QFETCH(double, expected);
        QCOMPARE(::leadingNumber(text), expected);
    }

    void roundHalfEven_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("expected");
        QTest::newRow("0.5") << 0.5 << 0.0;
        QTest::newRow("1.5") << 1.5 << 2.0;
        QTest::newRow("2.5") << 2.5 << 2.0;
        QTest::newRow("2.51") << 2.51 << 3.0;
        QTest::newRow("-0.5") << -0.5 << 0.0;
        QTest::newRow("-1.5") << -1.5 << -2.0;
        QTest::newRow("-2.5") << -2.5 << -2.0;
        QTest::newRow("-2.4") << -2.4 << -2.0;
    }
    void roundHalfEven() {
        QFETCH(double, value);
        QFETCH(double, expected);
        QCOMPARE(::roundHalfEven(value), expected);
    }

    void int16Limits() {
        QCOMPARE(toInt16(32767.0), qint16(32767));
        QCOMPARE(toInt16(-32768.0), qint16(-32768));
        QCOMPARE(toInt16(32766.5), qint16(32766));
        QVERIFY_THROWS_EXCEPTION(RuntimeError, toInt16(32767.5)); // halves go to the even 32768
        QVERIFY_THROWS_EXCEPTION(RuntimeError, toInt16(32768.0));
        QVERIFY_THROWS_EXCEPTION(RuntimeError, toInt16(-32768.6));
        QVERIFY_THROWS_EXCEPTION(RuntimeError, textToInt16("99999999999999999999999"));
        QCOMPARE(textToInt16("1999"), qint16(1999));
        QCOMPARE(toInt32(2147483647.0), qint32(2147483647));
        QVERIFY_THROWS_EXCEPTION(RuntimeError, toInt32(2147483648.0));
    }

    void checkedArithmetic() {
        QCOMPARE(add16(32766, 1), qint16(32767));
        QVERIFY_THROWS_EXCEPTION(RuntimeError, add16(32767, 1));
        QCOMPARE(sub16(0, 5), qint16(-5));
        QVERIFY_THROWS_EXCEPTION(RuntimeError, sub16(-32768, 1));
        try {
            add16(32767, 1);
            QFAIL("no overflow raised");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.number(), int(RuntimeError::Overflow));
        }
    }
};

QTEST_APPLESS_MAIN(tst_Numeric)
#include "tst_numeric.moc"
