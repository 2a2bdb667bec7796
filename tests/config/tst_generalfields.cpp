#include "support/MainHarness.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>

class tst_GeneralFields : public QObject {
    Q_OBJECT

private slots:
    // "n=text" sets the whole text of box Textn at once (one Change), then leaves it
    // (the same check again). The window starts with both boxes empty and both
    // numbers at 0. A count of "Error" comes with "Invalid Terminal ", any other
    // with "Ready".
    void terminalRange_data() {
        QTest::addColumn<QStringList>("typing");
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("last");
        QTest::addColumn<QString>("count");
        auto row = [](const char *name, const QStringList &typing, const char *first,
                      const char *last, const char *count) {
            QTest::newRow(name) << typing << QString::fromUtf8(first) << QString::fromUtf8(last)
                                << QString::fromUtf8(count);
        };
        row("leading zeros", {"1=007", "2=010"}, "007", "010", "4");
        // The first box keeps a number above the last: the other end may follow.
        row("first above last", {"1=5"}, "5", "", "Error");
        row("then the last", {"1=5", "2=7"}, "5", "7", "3");
        row("first raised past last", {"1=5", "2=7", "1=8"}, "8", "7", "Error");
        // A refused first box counts as 0: the last alone gives a count.
        row("last alone", {"2=12"}, "", "12", "13");
        row("letter in first, then last", {"1=10", "2=12", "1=a", "2=12"}, "", "12", "13");
        // "0" empties the box and resets its number: 1 to (0) is then an error.
        row("0 in last", {"1=10", "2=12", "2=0", "1=1"}, "1", "", "Error");
        for (const char *bad :
             {" 5", "+5", "1e3", "1\xEF\xBC\x95", "32768", "99999999999999999999"})
            row(qPrintable(QStringLiteral("'%1' in last").arg(QString::fromUtf8(bad))),
                {"1=1", "2=9", QStringLiteral("2=") + QString::fromUtf8(bad)}, "1", "", "Error");
        row("1 to 32767", {"1=1", "2=32767"}, "1", "32767", "32767");
        // From a refused first (0) a count of 32767 is the most that fits 16 bits.
        row("count beyond 16 bits", {"2=32767"}, "", "", "Error");
        row("count at 16 bits", {"2=32766"}, "", "32766", "32767");
    }
    void terminalRange() {
        QFETCH(QStringList, typing);
        QFETCH(QString, first);
        QFETCH(QString, last);
        QFETCH(QString, count);
        MainHarness h;
        for (const QString &step : typing)
            h.typeAndLeave(step.startsWith(u'1') ? "Text1" : "Text2", step.mid(2));
        QCOMPARE(h.w<QLineEdit>("Text1")->text(), first);
        QCOMPARE(h.w<QLineEdit>("Text2")->text(), last);
        QCOMPARE(h.w<QLabel>("L_nbTPChiffre")->text(), count);
        QCOMPARE(h.panel2(), count == u"Error" ? "Invalid Terminal " : "Ready");
    }

    void rangeErrorInFrench() {
        MainHarness h;
        h.trigger("m_French");
        h.typeAndLeave("Text1", QStringLiteral("5"));
        QCOMPARE(h.w<QLabel>("L_nbTPChiffre")->text(), QStringLiteral("Erreur"));
        QCOMPARE(h.panel2(), QStringLiteral("Terminal non valide"));
    }

    void leavingABoxChecksItAgain() {
        MainHarness h;
        h.typeAndLeave("Text1", QStringLiteral("10"));
        h.typeAndLeave("Text2", QStringLiteral("12"));
        h.w<QLabel>("StatusPanel2")->setText(QStringLiteral("other message"));
        {
            // Changed without their Change handlers: only leaving a box checks it.
            const QSignalBlocker quiet1(h.w<QLineEdit>("Text1")), quiet2(h.w<QLineEdit>("Text2"));
            h.w<QLineEdit>("Text1")->setText(QStringLiteral("11"));
            h.w<QLineEdit>("Text2")->setText(QStringLiteral("x"));
        }
        h.leave("Text1");
        QCOMPARE(h.w<QLabel>("L_nbTPChiffre")->text(), QStringLiteral("2"));
        QCOMPARE(h.panel2(), QStringLiteral("Ready"));
        h.leave("Text2");
        QCOMPARE(h.w<QLineEdit>("Text2")->text(), QString());
        QCOMPARE(h.w<QLabel>("L_nbTPChiffre")->text(), QStringLiteral("Error"));
    }

    void timeOutAndPortCommitOnLeaving_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("timeOut");
        QTest::addColumn<QString>("panel2");
        QTest::newRow("20 s") << "20 s" << 20 << "Ready";
        QTest::newRow("no number") << "fast" << 0 << "Ready";
        QTest::newRow("half to even") << "2.5" << 2 << "Ready";
        QTest::newRow("negative") << "-7" << -7 << "Ready";
        // Too large for the control: the handler ends with the run-time error.
        QTest::newRow("overflow") << "40000" << 100 << "Run-time error 6: Overflow";
    }
    void timeOutAndPortCommitOnLeaving() {
        QFETCH(QString, text);
        QFETCH(int, timeOut);
        QFETCH(QString, panel2);
        MainHarness h;
        h.w<QComboBox>("C_timeout")->setCurrentText(text);
        h.w<QComboBox>("C_port")->setCurrentText(QStringLiteral(" any port "));
        QCOMPARE(h.net().TimeOut(), qint16(100));
        h.leave("C_timeout");
        h.leave("C_port");
        QCOMPARE(h.net().TimeOut(), qint16(timeOut));
        // The port is taken as it stands, blanks and all.
        QCOMPARE(h.net().CommPort(), QStringLiteral(" any port "));
        QCOMPARE(h.panel2(), panel2);
    }
};

QTEST_MAIN(tst_GeneralFields)
#include "tst_generalfields.moc"
