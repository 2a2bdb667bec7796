#include "support/FilesSupport.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>

namespace {

using Typing = QList<std::pair<QByteArray, QString>>; // (box, whole text), in order

} // namespace

class tst_GeneralFields : public QObject {
    Q_OBJECT

private slots:
    // Each text is set at once (one Change), then the box is left (the same check
    // again). The window starts with both boxes empty and both numbers at 0.
    void terminalRange_data() {
        QTest::addColumn<bool>("french");
        QTest::addColumn<Typing>("typing");
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("last");
        QTest::addColumn<QString>("count");
        QTest::addColumn<QString>("panel2");
        const QString ready = QStringLiteral("Ready"), error = QStringLiteral("Error"),
                      invalid = QStringLiteral("Invalid Terminal ");

        QTest::newRow("10 to 12") << false << Typing{{"Text1", "10"}, {"Text2", "12"}} << "10"
                                  << "12"
                                  << "3" << ready;
        QTest::newRow("10 to 10") << false << Typing{{"Text1", "10"}, {"Text2", "10"}} << "10"
                                  << "10"
                                  << "1" << ready;
        QTest::newRow("leading zeros")
            << false << Typing{{"Text1", "007"}, {"Text2", "010"}} << "007"
            << "010"
            << "4" << ready;
        // The first box keeps a number above the last: the other end may follow.
        QTest::newRow("first above last") << false << Typing{{"Text1", "5"}} << "5"
                                          << "" << error << invalid;
        QTest::newRow("first above last, French") << true << Typing{{"Text1", "5"}} << "5"
                                                  << ""
                                                  << "Erreur"
                                                  << "Terminal non valide";
        QTest::newRow("then the last") << false << Typing{{"Text1", "5"}, {"Text2", "7"}} << "5"
                                       << "7"
                                       << "3" << ready;
        QTest::newRow("first raised past last")
            << false << Typing{{"Text1", "5"}, {"Text2", "7"}, {"Text1", "8"}} << "8"
            << "7" << error << invalid;
        // A refused first box counts as 0: the last alone gives a count.
        QTest::newRow("last alone") << false << Typing{{"Text2", "12"}} << ""
                                    << "12"
                                    << "13" << ready;
        // "0" empties the box and resets its number: 1 to (0) is then an error.
        QTest::newRow("0 in last")
            << false << Typing{{"Text1", "10"}, {"Text2", "12"}, {"Text2", "0"}, {"Text1", "1"}}
            << "1"
            << "" << error << invalid;
        QTest::newRow("0 in first")
            << false << Typing{{"Text1", "10"}, {"Text2", "12"}, {"Text1", "0"}} << ""
            << "12" << error << invalid;
        // A refused first resets its number to 0, and the last's check counts from it.
        QTest::newRow("letter in first, then last")
            << false << Typing{{"Text1", "10"}, {"Text2", "12"}, {"Text1", "a"}, {"Text2", "12"}}
            << ""
            << "12"
            << "13" << ready;
        QTest::newRow("letter in first, French") << true << Typing{{"Text1", "a"}} << ""
                                                 << ""
                                                 << "Erreur"
                                                 << "Terminal non valide";
        for (const char *bad : {"12a", " 5", "5 ", "+5", "-5", "5.0", "1e3"})
            QTest::addRow("'%s' in last", bad)
                << false << Typing{{"Text1", "1"}, {"Text2", "9"}, {"Text2", bad}} << "1"
                << "" << error << invalid;
        // A number beyond 16 bits is refused like any other bad text.
        QTest::newRow("32768") << false << Typing{{"Text1", "1"}, {"Text2", "32768"}} << "1"
                               << "" << error << invalid;
        QTest::newRow("twenty digits")
            << false << Typing{{"Text1", "1"}, {"Text2", "99999999999999999999"}} << "1"
            << "" << error << invalid;
        QTest::newRow("32767") << false << Typing{{"Text1", "32767"}, {"Text2", "32767"}} << "32767"
                               << "32767"
                               << "1" << ready;
        QTest::newRow("1 to 32767") << false << Typing{{"Text1", "1"}, {"Text2", "32767"}} << "1"
                                    << "32767"
                                    << "32767" << ready;
        // From a refused first (0) the count of 32767 would need 17 bits.
        QTest::newRow("count beyond 16 bits") << false << Typing{{"Text2", "32767"}} << ""
                                              << "" << error << invalid;
        QTest::newRow("count at 16 bits") << false << Typing{{"Text2", "32766"}} << ""
                                          << "32766"
                                          << "32767" << ready;
    }
    void terminalRange() {
        QFETCH(bool, french);
        QFETCH(Typing, typing);
        QFETCH(QString, first);
        QFETCH(QString, last);
        QFETCH(QString, count);
        QFETCH(QString, panel2);
        MainHarness h;
        if (french)
            h.trigger("m_French");
        for (const auto &[box, text] : typing)
            h.typeAndLeave(box.constData(), text);
        QCOMPARE(h.w<QLineEdit>("Text1")->text(), first);
        QCOMPARE(h.w<QLineEdit>("Text2")->text(), last);
        QCOMPARE(h.w<QLabel>("L_nbTPChiffre")->text(), count);
        QCOMPARE(h.panel2(), panel2);
    }

    void everyKeystrokeIsChecked() {
        MainHarness h;
        h.typeAndLeave("Text1", QStringLiteral("10"));
        auto *last = h.w<QLineEdit>("Text2");
        last->setFocus();
        QTest::keyClicks(last, QStringLiteral("1"));
        QCOMPARE(h.w<QLabel>("L_nbTPChiffre")->text(), QStringLiteral("Error"));
        QTest::keyClicks(last, QStringLiteral("2"));
        QCOMPARE(h.w<QLabel>("L_nbTPChiffre")->text(), QStringLiteral("3"));
        QCOMPARE(h.panel2(), QStringLiteral("Ready"));
        // A letter empties the whole box at once.
        QTest::keyClicks(last, QStringLiteral("x"));
        QCOMPARE(last->text(), QString());
        QCOMPARE(h.w<QLabel>("L_nbTPChiffre")->text(), QStringLiteral("Error"));
        QCOMPARE(h.panel2(), QStringLiteral("Invalid Terminal "));
    }

    void leavingABoxChecksItAgain() {
        MainHarness h;
        h.typeAndLeave("Text1", QStringLiteral("10"));
        h.typeAndLeave("Text2", QStringLiteral("12"));
        h.w<QLabel>("StatusPanel2")->setText(QStringLiteral("other message"));
        {
            // Changed without its Change handler: only leaving the box checks it.
            const QSignalBlocker quiet(h.w<QLineEdit>("Text1"));
            h.w<QLineEdit>("Text1")->setText(QStringLiteral("11"));
        }
        QCOMPARE(h.w<QLabel>("L_nbTPChiffre")->text(), QStringLiteral("3"));
        h.leave("Text1");
        QCOMPARE(h.w<QLabel>("L_nbTPChiffre")->text(), QStringLiteral("2"));
        QCOMPARE(h.panel2(), QStringLiteral("Ready"));
        {
            const QSignalBlocker quiet(h.w<QLineEdit>("Text2"));
            h.w<QLineEdit>("Text2")->setText(QStringLiteral("x"));
        }
        h.leave("Text2");
        QCOMPARE(h.w<QLineEdit>("Text2")->text(), QString());
        QCOMPARE(h.w<QLabel>("L_nbTPChiffre")->text(), QStringLiteral("Error"));
    }

    void timeOutAndPortCommitOnLeaving_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("timeOut");
        QTest::addColumn<QString>("panel2");
        QTest::newRow("from the list") << "500" << 500 << "Ready";
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
        QCOMPARE(h.net().CommPort(), QStringLiteral("COM1"));
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
