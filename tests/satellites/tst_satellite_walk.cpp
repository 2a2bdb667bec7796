#include "support/MainHarness.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QTimer>
#include <algorithm>

namespace {

// Whether the store before an insert or a move lets it go on: digits only, below 2000.
// A number beyond 16 bits raises instead, which stops the action just as well.
bool storeAccepts(const QString &text) {
    const auto digit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), digit) &&
           text.toDouble() < 2000;
}

} // namespace

// Thousands of random clicks and field edits on one window: l_index must always name a
// satellite of the control's list and follow the moves.
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
        // The port stays closed, so Next and Previous must never pause.
        QSignalSpy ticks(h.w<QTimer>("Timer1"), &QTimer::timeout);
        h.net().clearCallLog();
        const QStringList satIds =
            QStringLiteral("|0|5|1999|2000|2047|2048|9999|12a|-5|99999| 7|32767|32768|0042")
                .split(u'|');
        const QStringList interfaces = {"RS-232", "RS-485", "rs-232", ""};

        int position = 1, count = 1;
        for (int step = 0; step < 4000; ++step) {
            const QString shown = text3->text();
            const bool stores = storeAccepts(shown);
            const int action = rng.bounded(100);
            QString what;
            const auto click = [&](const char *button) {
                what = button;
                h.click(button);
            };
            if (action < 18) {
                click("b_Insert");
                if (position != 16 && stores) {
                    ++position;
                    ++count;
                }
            } else if (action < 30) {
                click("b_Supp");
                if (count != 1) {
                    --count;
                    position = std::max(position - 1, 1);
                }
            } else if (action < 32) {
                click("b_ClearAll");
                position = count = 1;
            } else if (action < 46) {
                click("b_Next_antenne");
                if (position < count && position < 16 && stores)
                    ++position;
            } else if (action < 60) {
                click("b_Prev_antenne");
                if (position >= 2 && stores)
                    --position;
            } else if (action < 82) {
                // Mostly acceptable Sat IDs, so that the list grows and moves.
                what = rng.bounded(2) == 0 ? QString::number(rng.bounded(2000))
                                           : satIds[rng.bounded(satIds.size())];
                text3->setText(what);
                if (rng.bounded(4) != 0)
                    h.leave("Text3");
                what = "Sat ID '" + what + "'";
            } else if (action < 91) {
                what = interfaces[rng.bounded(interfaces.size())];
                h.typeAndLeave("C_Interface", what);
                what = "interface '" + what + "'";
            } else {
                const int state = rng.bounded(3);
                h.w<QCheckBox>("Check1")->setCheckState(Qt::CheckState(state));
                h.leave("Check1");
                what = "active flag " + QString::number(state);
            }
            const QString expected = QStringLiteral("%1/%2 of %2").arg(position).arg(count);
            const QString seen = h.w<QLabel>("l_index")->text() +
                                 QStringLiteral(" of %1").arg(h.net().Satellites().Count());
            QVERIFY2(seen == expected,
                     qPrintable(QStringLiteral("seed %1, step %2, %3 (Sat ID field "
                                               "'%4'): shows %5, expected %6")
                                    .arg(seed)
                                    .arg(step)
                                    .arg(what, shown, seen, expected)));
        }
        QCOMPARE(ticks.count(), 0);
        QVERIFY(!h.net().callLog().contains("StopPolling"));
    }
};

QTEST_MAIN(tst_SatelliteWalk)
#include "tst_satellite_walk.moc"
