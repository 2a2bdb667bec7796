#include "support/MainHarness.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QTimer>
#include <QtTest>

namespace {

// Whether the store before an insert or a move lets it go on: digits only, below
// 2000. A number beyond 16 bits raises instead, which stops the action just as well.
bool storeAccepts(const QString &text) {
    if (text.isEmpty())
        return false;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9')
            return false;
    }
    return text.toDouble() < 2000;
}

} // namespace

// Thousands of random clicks and field edits on one window: the position shown in
// l_index must always name a satellite of the control's list and follow the moves.
class tst_SatelliteWalk : public QObject {
    Q_OBJECT

private slots:
    void randomWalk() {
        const QByteArray fixedSeed = qgetenv("NORVALE_WALK_SEED");
        const quint32 seed =
            fixedSeed.isEmpty() ? QRandomGenerator::global()->generate() : fixedSeed.toUInt();
        qInfo("random walk seed %u (repeat with NORVALE_WALK_SEED=%u)", seed, seed);
        QRandomGenerator rng(seed);

        MainHarness h;
        auto *text3 = h.w<QLineEdit>("Text3");
        auto *interfaceBox = h.w<QComboBox>("C_Interface");
        auto *check1 = h.w<QCheckBox>("Check1");
        auto *index = h.w<QLabel>("l_index");
        // The port stays closed, so Next and Previous must never pause.
        QSignalSpy ticks(h.main().findChild<QTimer *>(QStringLiteral("Timer1")), &QTimer::timeout);
        h.net().clearCallLog();

        const QStringList satIdTexts = {
            QString(),
            QStringLiteral("0"),
            QStringLiteral("5"),
            QStringLiteral("12"),
            QStringLiteral("1998"),
            QStringLiteral("1999"),
            QStringLiteral("2000"),
            QStringLiteral("2046"),
            QStringLiteral("2047"),
            QStringLiteral("2048"),
            QStringLiteral("9999"),
            QStringLiteral("12a"),
            QStringLiteral("-5"),
            QStringLiteral("99999"),
            QStringLiteral(" 7"),
            QStringLiteral("32767"),
            QStringLiteral("32768"),
            QStringLiteral("0042"),
        };
        const QStringList interfaces = {QStringLiteral("RS-232"), QStringLiteral("RS-485"),
                                        QStringLiteral("rs-232"), QString()};
        const Qt::CheckState states[] = {Qt::Unchecked, Qt::Checked, Qt::PartiallyChecked};

        int position = 1;
        int count = 1;
        int highestPosition = 1;
        int longestList = 1;
        const int steps = 4000;
        for (int step = 0; step < steps; ++step) {
            const QString shown = text3->text();
            const int action = rng.bounded(100);
            QString what;
            if (action < 18) {
                what = QStringLiteral("Insert");
                h.click("b_Insert");
                if (position != 16 && storeAccepts(shown)) {
                    ++position;
                    ++count;
                }
            } else if (action < 30) {
                what = QStringLiteral("Remove");
                h.click("b_Supp");
                if (count != 1) {
                    --count;
                    if (position != 1)
                        --position;
                }
            } else if (action < 32) {
                what = QStringLiteral("Remove all");
                h.click("b_ClearAll");
                position = count = 1;
            } else if (action < 46) {
                what = QStringLiteral("Next");
                h.click("b_Next_antenne");
                if (position + 1 <= count && position < 16 && storeAccepts(shown))
                    ++position;
            } else if (action < 60) {
                what = QStringLiteral("Previous");
                h.click("b_Prev_antenne");
                if (position >= 2 && storeAccepts(shown))
                    --position;
            } else if (action < 82) {
                // Mostly acceptable Sat IDs, so that the list grows and moves.
                const QString typed = rng.bounded(2) == 0
                                          ? QString::number(rng.bounded(2000))
                                          : satIdTexts[rng.bounded(satIdTexts.size())];
                what = QStringLiteral("Sat ID '%1'").arg(typed);
                text3->setText(typed);
                if (rng.bounded(4) != 0)
                    h.leave("Text3");
            } else if (action < 91) {
                const QString chosen = interfaces[rng.bounded(interfaces.size())];
                what = QStringLiteral("interface '%1'").arg(chosen);
                interfaceBox->setCurrentText(chosen);
                h.leave("C_Interface");
            } else {
                const Qt::CheckState state = states[rng.bounded(3)];
                what = QStringLiteral("active flag %1").arg(int(state));
                check1->setCheckState(state);
                h.leave("Check1");
            }

            const QString context = QStringLiteral("seed %1, step %2 (%3, Sat ID field was '%4')")
                                        .arg(seed)
                                        .arg(step)
                                        .arg(what, shown);
            const qint32 listCount = h.net().Satellites().Count();
            const QStringList shownPosition = index->text().split(u'/');
            QVERIFY2(shownPosition.size() == 2, qPrintable(context));
            const int shownIndex = shownPosition[0].toInt();
            QVERIFY2(shownPosition[1] == QString::number(listCount), qPrintable(context));
            QVERIFY2(shownIndex >= 1 && shownIndex <= listCount && shownIndex <= 16,
                     qPrintable(context));
            QVERIFY2(shownIndex == position && listCount == count,
                     qPrintable(context + QStringLiteral(": shows %1, expected %2/%3")
                                              .arg(index->text())
                                              .arg(position)
                                              .arg(count)));
            highestPosition = std::max(highestPosition, position);
            longestList = std::max(longestList, count);
        }
        qInfo("highest position %d, longest list %d", highestPosition, longestList);
        QCOMPARE(ticks.count(), 0);
        QVERIFY(!h.net().callLog().contains(QStringLiteral("StopPolling")));
    }
};

QTEST_MAIN(tst_SatelliteWalk)
#include "tst_satellite_walk.moc"
