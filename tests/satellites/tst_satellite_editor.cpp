#include "config/Globale.h"
#include "platform/LanguageTable.h"
#include "platform/RuntimeError.h"
#include "satellites/SatelliteFields.h"
#include "satellites/SatelliteView.h"
#include "support/MainHarness.h"
#include "support/SatelliteEditorHelpers.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <QtTest>

namespace {

QString position(MainHarness &h) {
    return h.w<QLabel>("l_index")->text();
}
QString text3(MainHarness &h) {
    return h.w<QLineEdit>("Text3")->text();
}
void setText3(MainHarness &h, const QString &text) {
    h.w<QLineEdit>("Text3")->setText(text);
}
QString interfaceText(MainHarness &h) {
    return h.w<QComboBox>("C_Interface")->currentText();
}
void setInterfaceText(MainHarness &h, const QString &text) {
    h.w<QComboBox>("C_Interface")->setCurrentText(text);
}
Qt::CheckState checkState(MainHarness &h) {
    return h.w<QCheckBox>("Check1")->checkState();
}
void setCheckState(MainHarness &h, Qt::CheckState state) {
    h.w<QCheckBox>("Check1")->setCheckState(state);
}
bool isEnabled(MainHarness &h, const char *button) {
    return h.w<QPushButton>(button)->isEnabled();
}
void setEnabled(MainHarness &h, const char *button, bool on) {
    h.w<QPushButton>(button)->setEnabled(on);
}
void setPanels(MainHarness &h, const QString &text) {
    h.w<QLabel>("StatusPanel1")->setText(text);
    h.w<QLabel>("StatusPanel2")->setText(text);
}

} // namespace

enum class Outcome { Accepted, Rejected, Overflow };
Q_DECLARE_METATYPE(Outcome)

class tst_SatelliteEditor : public QObject {
    Q_OBJECT

private slots:
    void insertProposesNextSatId_data() {
        QTest::addColumn<QString>("shown");
        QTest::addColumn<qint16>("stored");
        QTest::addColumn<QString>("proposed");
        QTest::newRow("12") << "12" << qint16(12) << "13";
        QTest::newRow("zero") << "0" << qint16(0) << "1";
        QTest::newRow("leading zeros") << "007" << qint16(7) << "8";
        QTest::newRow("1999") << "1999" << qint16(1999) << "2000";
    }
    void insertProposesNextSatId() {
        QFETCH(QString, shown);
        QFETCH(qint16, stored);
        QFETCH(QString, proposed);
        MainHarness h;
        setSatellites(h, {{5}});
        // Changed but not left: Insert stores all three fields itself.
        setText3(h, shown);
        setInterfaceText(h, QStringLiteral("RS-485"));
        setCheckState(h, Qt::Unchecked);
        fillNetworkView(h);

        h.click("b_Insert");

        QCOMPARE(satIds(h.net()), QStringLiteral("%1 %2").arg(stored).arg(proposed));
        QCOMPARE(h.net().Satellites().Item(1)->Interface(), qint16(0));
        QCOMPARE(h.net().Satellites().Item(1)->Enabled(), 0);
        QCOMPARE(h.net().callLog().last(), QStringLiteral("Satellites.Add ") + proposed);
        QCOMPARE(text3(h), proposed);
        QCOMPARE(position(h), QStringLiteral("2/2"));
        QCOMPARE(h.panel2(), QStringLiteral("Norvale added ") + proposed);
        QVERIFY(networkViewCleared(h));
        // Not reloaded from the new satellite.
        QCOMPARE(interfaceText(h), QStringLiteral("RS-485"));
        QCOMPARE(checkState(h), Qt::Unchecked);
    }

    void insertAfter1999LeavesAnInvalidSatellite() {
        MainHarness h;
        setSatellites(h, {{1999}});
        h.click("b_Insert");
        QCOMPARE(satIds(h.net()), QStringLiteral("1999 2000"));
        QCOMPARE(text3(h), QStringLiteral("2000"));

        // 2000 went into the list as it was; every store from it is refused.
        for (const char *button : {"b_Insert", "b_Prev_antenne"}) {
            setText3(h, QStringLiteral("2000"));
            h.w<QLabel>("StatusPanel2")->clear();
            h.click(button);
            QCOMPARE(text3(h), QStringLiteral("9999"));
            QCOMPARE(h.panel2(), QStringLiteral("Invalid Sat ID"));
            QCOMPARE(satIds(h.net()), QStringLiteral("1999 2000"));
            QCOMPARE(position(h), QStringLiteral("2/2"));
        }
    }

    void insertFromTheMiddleAppendsButStepsByOne() {
        MainHarness h;
        setSatellites(h, {{10}, {20}, {30}});
        h.click("b_Insert");
        QCOMPARE(satIds(h.net()), QStringLiteral("10 20 30 11"));
        QCOMPARE(position(h), QStringLiteral("2/4"));
        QCOMPARE(text3(h), QStringLiteral("11"));
        // The position now names the old second satellite, which the field writes.
        h.leave("Text3");
        QCOMPARE(satIds(h.net()), QStringLiteral("10 11 30 11"));
    }

    void insertStopsAtPosition16() {
        MainHarness h;
        for (int i = 0; i < 15; ++i)
            h.click("b_Insert");
        QCOMPARE(satIds(h.net()), QStringLiteral("0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15"));
        QCOMPARE(position(h), QStringLiteral("16/16"));

        // Refused before the fields are even looked at.
        setText3(h, QStringLiteral("abc"));
        h.click("b_Insert");
        QCOMPARE(h.panel2(), QStringLiteral("Too many Norvales"));
        QCOMPARE(text3(h), QStringLiteral("abc"));
        QCOMPARE(h.net().Satellites().Count(), 16);
        QCOMPARE(position(h), QStringLiteral("16/16"));

        // An insert from position 15 appends a 17th satellite and makes 16 current.
        setText3(h, QStringLiteral("15"));
        h.click("b_Prev_antenne");
        QCOMPARE(position(h), QStringLiteral("15/16"));
        h.click("b_Insert");
        QCOMPARE(position(h), QStringLiteral("16/17"));
        QCOMPARE(text3(h), QStringLiteral("15"));

        // Only the position counts: 16 refuses though the list is longer.
        h.w<QLabel>("StatusPanel2")->clear();
        h.click("b_Insert");
        QCOMPARE(h.panel2(), QStringLiteral("Too many Norvales"));
        QCOMPARE(h.net().Satellites().Count(), 17);
        // Next stays below 16 whatever the count; nothing is stored.
        setText3(h, QStringLiteral("abc"));
        h.click("b_Next_antenne");
        QCOMPARE(position(h), QStringLiteral("16/17"));
        QCOMPARE(text3(h), QStringLiteral("abc"));
    }

    // Position 17 cannot be reached from the window (Insert stops at 16, Next moves
    // only below 16, a load restarts at 1), so the editor's parts are built here
    // around a simulated network and the position is set directly.
    void storeRefusedAtPosition17() {
        QLineEdit text3;
        QComboBox interfaceBox;
        interfaceBox.setEditable(true);
        interfaceBox.addItems({QStringLiteral("RS-232"), QStringLiteral("RS-485")});
        QCheckBox check1;
        QLabel index, panel2;
        QPushButton getConfig, alive;
        QTableWidget networkView;
        Globale g;
        LanguageTable table;
        Texts texts(table, g);
        SimulatedRadioNet net;
        SatelliteView view(
            {&text3, &interfaceBox, &check1, &index, &getConfig, &alive, &networkView}, g, net);
        SatelliteFields fields({&text3, &interfaceBox, &check1, &panel2}, g, texts, net, view);
        for (qint16 id = 1; id <= 17; ++id)
            net.Satellites().Add(id)->setInterface(1);
        const QString before = satelliteList(net);
        text3.setText(QStringLiteral("5"));
        interfaceBox.setCurrentText(QStringLiteral("RS-485"));
        check1.setCheckState(Qt::Checked);
        getConfig.setEnabled(false);

        g.CurrentSatelliteIndex = 17;
        g.LanguageBase = 0;
        QVERIFY(!fields.StoreCurrentSatellite());
        QCOMPARE(panel2.text(), QStringLiteral("Trop de Norvale"));
        g.LanguageBase = 100;
        text3.setText(QStringLiteral("abc")); // the position is tested first
        QVERIFY(!fields.StoreCurrentSatellite());
        QCOMPARE(panel2.text(), QStringLiteral("Too many Norvales"));
        QCOMPARE(text3.text(), QStringLiteral("abc"));
        QCOMPARE(satelliteList(net), before);

        // 16 is not refused by the store itself.
        g.CurrentSatelliteIndex = 16;
        text3.setText(QStringLiteral("5"));
        QVERIFY(fields.StoreCurrentSatellite());
        QCOMPARE(satIds(net), QStringLiteral("1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 5 17"));
        QCOMPARE(net.Satellites().Item(16)->Interface(), qint16(0));
        QCOMPARE(net.Satellites().Item(15)->Interface(), qint16(1));
        QVERIFY(!getConfig.isEnabled()); // the store leaves the query buttons alone
        QVERIFY(alive.isEnabled());
    }

    void removeNeverRemovesTheLastSatellite() {
        MainHarness h;
        setPanels(h, QStringLiteral("-"));
        fillNetworkView(h);
        h.net().clearCallLog();
        h.click("b_Supp");
        QCOMPARE(satIds(h.net()), QStringLiteral("0"));
        QCOMPARE(h.panel2(), QStringLiteral("-"));
        QVERIFY(!networkViewCleared(h));
        QVERIFY(h.net().callLog().isEmpty());
    }

    void removeShowsTheSatelliteBefore_data() {
        QTest::addColumn<int>("from");
        QTest::addColumn<QString>("list");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("shownPosition");
        QTest::addColumn<QString>("shownInterface");
        QTest::addColumn<Qt::CheckState>("shownCheck");
        // The first place is taken over by the next satellite.
        QTest::newRow("first") << 1 << "11,0,0 12,1,1"
                               << "11"
                               << "1/2"
                               << "RS-485" << Qt::Unchecked;
        QTest::newRow("middle") << 2 << "10,1,1 12,1,1"
                                << "10"
                                << "1/2"
                                << "RS-232" << Qt::Checked;
        QTest::newRow("last") << 3 << "10,1,1 11,0,0"
                              << "11"
                              << "2/2"
                              << "RS-485" << Qt::Unchecked;
    }
    void removeShowsTheSatelliteBefore() {
        QFETCH(int, from);
        QFETCH(QString, list);
        QFETCH(QString, shown);
        QFETCH(QString, shownPosition);
        QFETCH(QString, shownInterface);
        QFETCH(Qt::CheckState, shownCheck);
        MainHarness h;
        setSatellites(h, {{10}, {11, 0, 0}, {12}});
        goToPosition(h, from);
        const QString removedId = text3(h);
        fillNetworkView(h);
        h.net().clearCallLog();

        h.click("b_Supp");

        QCOMPARE(h.net().callLog().first(), QStringLiteral("Satellites.Remove ") + removedId);
        QCOMPARE(satelliteList(h.net()), list);
        QCOMPARE(h.panel2(), QStringLiteral("Norvale removed ") + removedId);
        QCOMPARE(position(h), shownPosition);
        QCOMPARE(text3(h), shown);
        QCOMPARE(interfaceText(h), shownInterface);
        QCOMPARE(checkState(h), shownCheck);
        QVERIFY(networkViewCleared(h));
    }

    void removeTakesTheSatIdNotTheField() {
        MainHarness h;
        setSatellites(h, {{5}, {7}, {5, 0, 0}});
        goToPosition(h, 3);
        // The field is neither checked nor stored; its text only names the message.
        setText3(h, QStringLiteral("abc"));
        h.click("b_Supp");
        QCOMPARE(h.panel2(), QStringLiteral("Norvale removed abc"));
        // The list removes the first satellite with Sat ID 5, not the one at position 3.
        QCOMPARE(satelliteList(h.net()), QStringLiteral("7,1,1 5,0,0"));
        QCOMPARE(position(h), QStringLiteral("2/2"));
        QCOMPARE(text3(h), QStringLiteral("5"));
        QCOMPARE(interfaceText(h), QStringLiteral("RS-485"));
    }

    void removeAllKeepsOneSatelliteZero() {
        MainHarness h;
        setSatellites(h, {{3, 0, 0}, {4, 0, 0}, {5, 0, 0}});
        goToPosition(h, 3);
        setText3(h, QStringLiteral("abc"));
        setEnabled(h, "b_GetConfig", false);
        setEnabled(h, "b_Alive", false);
        fillNetworkView(h);
        h.net().clearCallLog();

        h.click("b_ClearAll");

        QCOMPARE(h.net().callLog(), QStringList({QStringLiteral("Satellites.Clear"),
                                                 QStringLiteral("Satellites.Add 0")}));
        QCOMPARE(satIds(h.net()), QStringLiteral("0"));
        QCOMPARE(h.net().Satellites().Item(1)->Interface(), qint16(1));
        QCOMPARE(position(h), QStringLiteral("1/1"));
        QCOMPARE(text3(h), QStringLiteral("0"));
        QCOMPARE(interfaceText(h), QStringLiteral("RS-232"));
        QCOMPARE(checkState(h),
                 h.net().Satellites().Item(1)->Enabled() != 0 ? Qt::Checked : Qt::Unchecked);
        QVERIFY(isEnabled(h, "b_GetConfig"));
        QVERIFY(isEnabled(h, "b_Alive"));
        QVERIFY(networkViewCleared(h));

        h.click("b_Insert");
        QCOMPARE(satIds(h.net()), QStringLiteral("0 1"));
    }

    void moveShowsTheNeighbour_data() {
        QTest::addColumn<int>("from");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("shown");
        QTest::newRow("next from 1") << 1 << "b_Next_antenne"
                                     << "2/3"
                                     << "11";
        QTest::newRow("next from 2") << 2 << "b_Next_antenne"
                                     << "3/3"
                                     << "12";
        QTest::newRow("previous from 3") << 3 << "b_Prev_antenne"
                                         << "2/3"
                                         << "11";
        QTest::newRow("previous from 2") << 2 << "b_Prev_antenne"
                                         << "1/3"
                                         << "10";
    }
    void moveShowsTheNeighbour() {
        QFETCH(int, from);
        QFETCH(QString, button);
        QFETCH(QString, to);
        QFETCH(QString, shown);
        MainHarness h;
        setSatellites(h, {{10}, {11}, {12}});
        goToPosition(h, from);
        setEnabled(h, "b_Config", true);
        fillNetworkView(h);
        setPanels(h, QStringLiteral("-"));

        h.click(button.toLatin1().constData());

        QCOMPARE(position(h), to);
        QCOMPARE(text3(h), shown);
        QCOMPARE(satelliteList(h.net()), QStringLiteral("10,1,1 11,1,1 12,1,1"));
        QVERIFY(!isEnabled(h, "b_Config"));
        QVERIFY(networkViewCleared(h));
        // The link status was queried after the move.
        QCOMPARE(h.panel1(), QStringLiteral("Com port inactive"));
        QCOMPARE(h.panel2(), QStringLiteral("Ready"));
    }

    void moveAtTheEndsDoesNothing_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("from");
        QTest::addColumn<QString>("button");
        QTest::newRow("next, only one") << 1 << 1 << "b_Next_antenne";
        QTest::newRow("previous, only one") << 1 << 1 << "b_Prev_antenne";
        QTest::newRow("next at the last") << 3 << 3 << "b_Next_antenne";
        QTest::newRow("previous at the first") << 3 << 1 << "b_Prev_antenne";
    }
    void moveAtTheEndsDoesNothing() {
        QFETCH(int, count);
        QFETCH(int, from);
        QFETCH(QString, button);
        MainHarness h;
        if (count == 3)
            setSatellites(h, {{10}, {11}, {12}});
        goToPosition(h, from);
        const QString before = position(h);
        // A store would turn this into "9999".
        setText3(h, QStringLiteral("abc"));
        setEnabled(h, "b_Config", true);
        fillNetworkView(h);
        setPanels(h, QStringLiteral("-"));

        h.click(button.toLatin1().constData());

        QCOMPARE(position(h), before);
        QCOMPARE(text3(h), QStringLiteral("abc"));
        QVERIFY(isEnabled(h, "b_Config"));
        QVERIFY(!networkViewCleared(h));
        QCOMPARE(h.panel1(), QStringLiteral("-"));
        QCOMPARE(h.panel2(), QStringLiteral("-"));
    }

    void moveStoresTheFieldsFirst() {
        MainHarness h;
        setSatellites(h, {{0}, {1}, {2}});
        goToPosition(h, 3);
        setText3(h, QStringLiteral("20"));
        setInterfaceText(h, QStringLiteral("RS-485"));
        setCheckState(h, Qt::Unchecked);

        h.click("b_Prev_antenne");

        // The store writes this satellite only; RS-485 does not spread here.
        QCOMPARE(satelliteList(h.net()), QStringLiteral("0,1,1 1,1,1 20,0,0"));
        QCOMPARE(position(h), QStringLiteral("2/3"));
        QCOMPARE(text3(h), QStringLiteral("1"));
        QCOMPARE(interfaceText(h), QStringLiteral("RS-232"));
        QCOMPARE(checkState(h), Qt::Checked);
    }

    void refusedMoveChangesNothing_data() {
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("button");
        for (const char *button : {"b_Next_antenne", "b_Prev_antenne"}) {
            for (const char *shown : {"2047", "2000", "", "abc", "-5"})
                QTest::addRow("%s '%s'", button, shown) << shown << button;
        }
    }
    void refusedMoveChangesNothing() {
        QFETCH(QString, shown);
        QFETCH(QString, button);
        MainHarness h;
        setSatellites(h, {{10}, {11}, {12}});
        goToPosition(h, 2);
        setText3(h, shown);
        setEnabled(h, "b_Config", true);
        fillNetworkView(h);
        setPanels(h, QStringLiteral("-"));

        h.click(button.toLatin1().constData());

        QCOMPARE(text3(h), QStringLiteral("9999"));
        QCOMPARE(h.panel2(), QStringLiteral("Invalid Sat ID"));
        QCOMPARE(position(h), QStringLiteral("2/3"));
        QCOMPARE(satelliteList(h.net()), QStringLiteral("10,1,1 11,1,1 12,1,1"));
        QVERIFY(isEnabled(h, "b_Config"));
        QVERIFY(!networkViewCleared(h));
        QCOMPARE(h.panel1(), QStringLiteral("-"));
    }

    void emptiedSatIdBecomes2047UntilChanged() {
        MainHarness h;
        setSatellites(h, {{7}, {8}});
        setEnabled(h, "b_GetConfig", false);
        setEnabled(h, "b_Alive", false);
        h.typeAndLeave("Text3", QString());
        QCOMPARE(text3(h), QStringLiteral("2047"));
        QCOMPARE(satIds(h.net()), QStringLiteral("2047 8"));
        QVERIFY(isEnabled(h, "b_GetConfig"));
        QVERIFY(isEnabled(h, "b_Alive"));

        // The satellite keeps 2047, but nothing moves away from it.
        h.click("b_Next_antenne");
        QCOMPARE(text3(h), QStringLiteral("9999"));
        QCOMPARE(h.panel2(), QStringLiteral("Invalid Sat ID"));
        QCOMPARE(position(h), QStringLiteral("1/2"));
        QCOMPARE(satIds(h.net()), QStringLiteral("2047 8"));

        h.typeAndLeave("Text3", QStringLiteral("9"));
        h.click("b_Next_antenne");
        QCOMPARE(position(h), QStringLiteral("2/2"));
        QCOMPARE(satIds(h.net()), QStringLiteral("9 8"));
    }

    void shownSatelliteIsLookedUpBySatId() {
        MainHarness h;
        setSatellites(h, {{5}, {5, 0, 0}});
        h.click("b_Next_antenne");
        QCOMPARE(position(h), QStringLiteral("2/2"));
        // The first satellite with that Sat ID is the one shown.
        QCOMPARE(interfaceText(h), QStringLiteral("RS-232"));
        QCOMPARE(checkState(h), Qt::Checked);
    }

    void shownInterfaceAndActiveFlag_data() {
        QTest::addColumn<qint16>("interfaceCode");
        QTest::addColumn<qint16>("enabled");
        QTest::addColumn<QString>("shownInterface");
        QTest::addColumn<Qt::CheckState>("shownCheck");
        QTest::newRow("RS-232 active") << qint16(1) << qint16(1) << "RS-232" << Qt::Checked;
        QTest::newRow("0 inactive") << qint16(0) << qint16(0) << "RS-485" << Qt::Unchecked;
        QTest::newRow("2, flag 5") << qint16(2) << qint16(5) << "RS-485" << Qt::Checked;
        QTest::newRow("-1, flag -1") << qint16(-1) << qint16(-1) << "RS-485" << Qt::Checked;
    }
    void shownInterfaceAndActiveFlag() {
        QFETCH(qint16, interfaceCode);
        QFETCH(qint16, enabled);
        QFETCH(QString, shownInterface);
        QFETCH(Qt::CheckState, shownCheck);
        MainHarness h;
        // The first is shown the opposite way, so the move has to change both.
        setSatellites(h, {{1, qint16(shownInterface == QLatin1String("RS-232") ? 0 : 1),
                           qint16(shownCheck == Qt::Checked ? 0 : 1)},
                          {2, interfaceCode, enabled}});
        h.click("b_Next_antenne");
        QCOMPARE(position(h), QStringLiteral("2/2"));
        QCOMPARE(interfaceText(h), shownInterface);
        QCOMPARE(checkState(h), shownCheck);
    }

    void satId9999DisablesTheQueries() {
        MainHarness h;
        setSatellites(h, {{0}, {9999}, {3}});
        h.click("b_Next_antenne");
        QCOMPARE(text3(h), QStringLiteral("9999"));
        QVERIFY(!isEnabled(h, "b_GetConfig"));
        QVERIFY(!isEnabled(h, "b_Alive"));

        setText3(h, QStringLiteral("4"));
        h.click("b_Next_antenne");
        QCOMPARE(position(h), QStringLiteral("3/3"));
        QVERIFY(isEnabled(h, "b_GetConfig"));
        QVERIFY(isEnabled(h, "b_Alive"));
        QCOMPARE(satIds(h.net()), QStringLiteral("0 4 3"));

        // Removing the first shows the 9999 one in its place.
        MainHarness other;
        setSatellites(other, {{0}, {9999}});
        other.click("b_Supp");
        QCOMPARE(position(other), QStringLiteral("1/1"));
        QCOMPARE(text3(other), QStringLiteral("9999"));
        QVERIFY(!isEnabled(other, "b_GetConfig"));
        QVERIFY(!isEnabled(other, "b_Alive"));
    }

    // The Sat ID rule through its four users: the three focus handlers and the store
    // (reached through Insert, which touches neither query button itself).
    void satIdRule_data() {
        QTest::addColumn<QString>("handler");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<Outcome>("outcome");
        QTest::addColumn<qint16>("value");
        struct Case {
            const char *shown;
            Outcome focus; // Text3, C_Interface and Check1
            Outcome store;
            qint16 value;
            Outcome text3Focus; // Text3 alone differs on the empty text
        };
        const Outcome A = Outcome::Accepted, R = Outcome::Rejected, O = Outcome::Overflow;
        const Case cases[] = {
            {"0", A, A, 0, A},     {"1999", A, A, 1999, A},
            {"0012", A, A, 12, A}, {"2000", R, R, 0, R},
            {"2046", R, R, 0, R},  {"2047", A, R, 2047, A},
            {"2048", R, R, 0, R},  {"9999", R, R, 0, R},
            {"32767", R, R, 0, R}, {"", R, R, 2047, A},
            {"12a", R, R, 0, R},   {"-5", R, R, 0, R},
            {" 12", R, R, 0, R},   {"+5", R, R, 0, R},
            {"1.5", R, R, 0, R},   {"\xef\xbc\x91\xef\xbc\x92", R, R, 0, R}, // full-width digits
            {"32768", O, O, 0, O}, {"99999", O, O, 0, O},
        };
        for (const Case &c : cases) {
            for (const char *handler : {"Text3", "C_Interface", "Check1", "b_Insert"}) {
                const bool isText3 = qstrcmp(handler, "Text3") == 0;
                const bool isStore = qstrcmp(handler, "b_Insert") == 0;
                QTest::addRow("%s '%s'", handler, c.shown) << handler << QString::fromUtf8(c.shown)
                                                           << (isStore   ? c.store
                                                               : isText3 ? c.text3Focus
                                                                         : c.focus)
                                                           << c.value;
            }
        }
    }
    void satIdRule() {
        QFETCH(QString, handler);
        QFETCH(QString, shown);
        QFETCH(Outcome, outcome);
        QFETCH(qint16, value);
        const bool isStore = handler == QLatin1String("b_Insert");
        MainHarness h;
        setSatellites(h, {{7}, {8}});
        goToPosition(h, 2);
        // Mixed, so that any change of the query buttons shows.
        setEnabled(h, "b_GetConfig", true);
        setEnabled(h, "b_Alive", false);
        setPanels(h, QStringLiteral("-"));
        setText3(h, shown);

        if (isStore)
            h.click("b_Insert");
        else
            h.leave(handler.toLatin1().constData());

        switch (outcome) {
        case Outcome::Accepted:
            if (isStore) {
                QCOMPARE(satIds(h.net()), QStringLiteral("7 %1 %2").arg(value).arg(value + 1));
                QCOMPARE(position(h), QStringLiteral("3/3"));
            } else {
                QCOMPARE(satelliteList(h.net()), QStringLiteral("7,1,1 %1,1,1").arg(value));
                QCOMPARE(text3(h), shown.isEmpty() ? QStringLiteral("2047") : shown);
                QCOMPARE(h.panel2(), QStringLiteral("-"));
                QVERIFY(isEnabled(h, "b_GetConfig"));
                QVERIFY(isEnabled(h, "b_Alive"));
            }
            break;
        case Outcome::Rejected:
            QCOMPARE(satelliteList(h.net()), QStringLiteral("7,1,1 8,1,1"));
            QCOMPARE(text3(h), QStringLiteral("9999"));
            QCOMPARE(h.panel2(), QStringLiteral("Invalid Sat ID"));
            QCOMPARE(position(h), QStringLiteral("2/2"));
            QCOMPARE(isEnabled(h, "b_GetConfig"), isStore);
            QVERIFY(!isEnabled(h, "b_Alive"));
            break;
        case Outcome::Overflow:
            // The handler ends where the number is converted; the window goes on.
            QCOMPARE(h.panel2(), RuntimeError::overflow().text());
            QCOMPARE(satelliteList(h.net()), QStringLiteral("7,1,1 8,1,1"));
            QCOMPARE(text3(h), shown);
            QCOMPARE(position(h), QStringLiteral("2/2"));
            QVERIFY(isEnabled(h, "b_GetConfig"));
            QVERIFY(!isEnabled(h, "b_Alive"));
            h.typeAndLeave("Text3", QStringLiteral("5"));
            QCOMPARE(satIds(h.net()), QStringLiteral("7 5"));
            break;
        }
    }

    void interfaceChoice() {
        MainHarness h;
        setSatellites(h, {{1}, {2}, {3}});
        goToPosition(h, 2);

        // A rejected Sat ID writes nothing, RS-485 included.
        setText3(h, QStringLiteral("abc"));
        h.typeAndLeave("C_Interface", QStringLiteral("RS-485"));
        QCOMPARE(text3(h), QStringLiteral("9999"));
        QCOMPARE(h.panel2(), QStringLiteral("Invalid Sat ID"));
        QCOMPARE(satelliteList(h.net()), QStringLiteral("1,1,1 2,1,1 3,1,1"));

        // RS-485 for one puts the whole list on it; the Sat ID goes along.
        setText3(h, QStringLiteral("22"));
        setCheckState(h, Qt::Unchecked); // not written by the interface
        h.typeAndLeave("C_Interface", QStringLiteral("RS-485"));
        QCOMPARE(satelliteList(h.net()), QStringLiteral("1,0,1 22,0,1 3,0,1"));
        QVERIFY(isEnabled(h, "b_GetConfig"));
        QVERIFY(isEnabled(h, "b_Alive"));

        // RS-232 changes only the current one.
        h.typeAndLeave("C_Interface", QStringLiteral("RS-232"));
        QCOMPARE(satelliteList(h.net()), QStringLiteral("1,0,1 22,1,1 3,0,1"));

        // Anything but the exact "RS-232" counts as RS-485.
        h.typeAndLeave("C_Interface", QStringLiteral("rs-232"));
        QCOMPARE(satelliteList(h.net()), QStringLiteral("1,0,1 22,0,1 3,0,1"));

        // The active flag's handler writes the interface of this satellite only.
        h.typeAndLeave("C_Interface", QStringLiteral("RS-232"));
        setInterfaceText(h, QStringLiteral("RS-485"));
        h.leave("Check1");
        QCOMPARE(satelliteList(h.net()), QStringLiteral("1,0,1 22,0,0 3,0,1"));
        setText3(h, QStringLiteral("23"));
        setInterfaceText(h, QStringLiteral("RS-232"));
        h.leave("Check1");
        QCOMPARE(satelliteList(h.net()), QStringLiteral("1,0,1 23,1,0 3,0,1"));
    }

    void fieldsWriteOnlyTheirOwnProperties() {
        MainHarness h;
        setSatellites(h, {{4}});
        setInterfaceText(h, QStringLiteral("RS-485"));
        setCheckState(h, Qt::Unchecked);
        setText3(h, QStringLiteral("6"));
        h.leave("Text3");
        QCOMPARE(satelliteList(h.net()), QStringLiteral("6,1,1"));
        setText3(h, QStringLiteral("7"));
        setInterfaceText(h, QStringLiteral("RS-232"));
        h.leave("C_Interface");
        QCOMPARE(satelliteList(h.net()), QStringLiteral("7,1,1"));
    }

    void activeFlag_data() {
        QTest::addColumn<QString>("handler");
        QTest::addColumn<Qt::CheckState>("state");
        QTest::addColumn<qint32>("written");
        for (const char *handler : {"Check1", "b_Insert"}) {
            QTest::addRow("%s unchecked", handler) << handler << Qt::Unchecked << 0;
            QTest::addRow("%s checked", handler) << handler << Qt::Checked << 1;
            // Grey counts as active.
            QTest::addRow("%s grey", handler) << handler << Qt::PartiallyChecked << 1;
        }
    }
    void activeFlag() {
        QFETCH(QString, handler);
        QFETCH(Qt::CheckState, state);
        QFETCH(qint32, written);
        MainHarness h;
        setSatellites(h, {{4, 1, qint16(written == 0 ? 1 : 0)}});
        setCheckState(h, state);
        if (handler == QLatin1String("Check1"))
            h.leave("Check1");
        else
            h.click("b_Insert");
        QCOMPARE(h.net().Satellites().Item(1)->Enabled(), written);
        QCOMPARE(h.net().Satellites().Item(1)->SatId(), qint16(4));
        QCOMPARE(checkState(h), state); // the field is not reloaded
    }

    void movesHaltPolling() {
        MainHarness h;
        setSatellites(h, {{1}, {2}});
        QVERIFY(h.net().OpenPort());
        QVERIFY(h.net().StartPolling());
        QCOMPARE(h.net().LinkState(), qint16(2));
        h.net().clearCallLog();

        h.click("b_Next_antenne");
        QCOMPARE(h.net().callLog(), QStringList{QStringLiteral("StopPolling")});
        QCOMPARE(h.net().LinkState(), qint16(3));
        QCOMPARE(h.panel1(), QStringLiteral("COM1 Open Polling halted"));

        // With the port closed there is nothing to halt and no pause.
        QVERIFY(h.net().ClosePort());
        h.net().clearCallLog();
        QSignalSpy ticks(h.main().findChild<QTimer *>(QStringLiteral("Timer1")), &QTimer::timeout);
        h.click("b_Prev_antenne");
        QCOMPARE(position(h), QStringLiteral("1/2"));
        QVERIFY(h.net().callLog().isEmpty());
        QCOMPARE(ticks.count(), 0);
        QCOMPARE(h.panel1(), QStringLiteral("Com port inactive"));
    }

    void messagesFollowTheLanguage() {
        MainHarness h;
        h.trigger("m_French");
        h.click("b_Insert");
        QCOMPARE(h.panel2(), QStringLiteral("Insertion du Norvale 1"));
        h.typeAndLeave("Text3", QStringLiteral("12a"));
        QCOMPARE(h.panel2(), QStringLiteral("Sat ID non valide"));
        h.click("b_Supp");
        QCOMPARE(h.panel2(), QStringLiteral("Suppression du Norvale 9999"));
    }
};

QTEST_MAIN(tst_SatelliteEditor)
#include "tst_satellite_editor.moc"
