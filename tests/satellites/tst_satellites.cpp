#include "support/MainHarness.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

namespace {

// The satellite editor of a window, its whole state read back as one text.
struct Editor : MainHarness {
    // Types "Sat ID[,interface[,check state 0-2]]" into the fields without leaving them.
    void type(const QString &fields) {
        const QStringList f = fields.split(u',');
        act("Text3=" + f[0] + (f.value(1).isEmpty() ? "" : " C_Interface=" + f[1]) +
            (f.size() > 2 ? " Check1=" + f[2] : ""));
    }

    // Replaces the control's list ("satId[,interface,enabled]" blank-separated, 1 and 1 by
    // default), shows the first satellite as a load would, then goes on with Next.
    void load(const QString &list, int position) {
        net().Satellites().Clear();
        for (const QString &entry : list.split(u' ')) {
            const QStringList f = entry.split(u',');
            const SatellitePtr s = net().Satellites().Add(qint16(f[0].toInt()));
            s->setInterface(qint16(f.value(1, QStringLiteral("1")).toInt()));
            s->setEnabled(qint16(f.value(2, QStringLiteral("1")).toInt()));
        }
        const SatellitePtr first = net().Satellites().Item(1);
        type(QString::number(first->SatId()) + (first->Interface() == 1 ? ",RS-232," : ",RS-485,") +
             (first->Enabled() != 0 ? "2" : "0"));
        act(QStringLiteral("l_index=1/%1").arg(net().Satellites().Count()));
        for (int i = 1; i < position; ++i)
            click("b_Next_antenne");
        // Marks the panels, the network view and the buttons (b_Alive off, the other two
        // on), so that a change to any shows.
        act("StatusPanel1=- StatusPanel2=- MFG1=x");
        w<QPushButton>("b_GetConfig")->setEnabled(true);
        w<QPushButton>("b_Alive")->setEnabled(false);
        w<QPushButton>("b_Config")->setEnabled(true);
    }

    // "list | position Sat-ID interface check | panel 1 | panel 2 | GACv": the list as
    // "satId,interface,enabled" each; G, A, C for b_GetConfig, b_Alive, b_Config enabled
    // ('-' when not); v when the values of MFG1 are emptied and its labels kept, else x.
    QString editor() {
        const QStringList s = shown({"l_index", "Text3", "C_Interface", "Check1#", "b_GetConfig?",
                                     "b_Alive?", "b_Config?", "MFG1"});
        const bool cleared =
            s[7] == ",,,,," && w<QTableWidget>("MFG1")->item(5, 0)->text() == "Tx Free";
        const QString flags = QString(s[4] == u"true" ? 'G' : '-') + (s[5] == u"true" ? 'A' : '-') +
                              (s[6] == u"true" ? 'C' : '-') + (cleared ? 'v' : 'x');
        return QStringList{satellitesOf(net()).join(u' ').replace(u'/', u','),
                           s.mid(0, 4).join(u' '), panel1(), panel2(), flags}
            .join(" | ");
    }
};

void row(const char *name, const char *list, int position, const char *actions, const char *state) {
    QTest::newRow(name) << QString(list) << position << QString(actions) << QString(state);
}

} // namespace

class tst_Satellites : public QObject {
    Q_OBJECT

private slots:
    // A list loaded and shown at a position, then in turn: "=fields" typed (see
    // Editor::type) or a step of MainHarness::act. The editor's state afterwards (see
    // Editor::editor; the load marked it).
    void edit_data() {
        QTest::addColumn<QString>("list");
        QTest::addColumn<int>("position");
        QTest::addColumn<QString>("actions");
        QTest::addColumn<QString>("state");
        // Insert stores all three fields, appends at the end but steps the position by one
        // only (Text3 then writes the old second), and does not reload the fields.
        row("insert", "10 20 30", 1, "=007,RS-485,0 b_Insert Text3",
            "7,0,0 8,1,1 30,1,1 8,0,0 | 2/4 8 RS-485 0 | - | Norvale added 8 | GACv");
        row("insert after 1999", "10 20 30", 1, "=1999 b_Insert",
            "1999,1,1 20,1,1 30,1,1 2000,0,0 | 2/4 2000 RS-232 2 | - | Norvale added 2000 | G-Cv");
        // From the first place the next satellite moves up into it.
        row("remove the first", "10 11,0,0 12", 1, "b_Supp",
            "11,0,0 12,1,1 | 1/2 11 RS-485 0 | - | Norvale removed 10 | GACv");
        row("remove the last", "10 11,0,0 12", 3, "b_Supp",
            "10,1,1 11,0,0 | 2/2 11 RS-485 0 | - | Norvale removed 12 | GACv");
        // The first satellite with that Sat ID goes; the field is not checked, only named.
        row("remove by Sat ID", "5 7 5,0,0", 3, "=abc b_Supp",
            "7,1,1 5,0,0 | 2/2 5 RS-485 0 | - | Norvale removed abc | GACv");
        row("remove the only one", "10", 1, "=abc b_Supp",
            "10,1,1 | 1/1 abc RS-232 2 | - | - | G-Cx");
        row("remove all", "3,0,0 4,0,0 5,0,0", 3, "=abc b_ClearAll",
            "0,1,0 | 1/1 0 RS-232 0 | - | - | GACv");
        // Nothing at the ends: a store would have turned "abc" into "9999".
        row("next at the last", "10 11 12", 3, "=abc b_Next_antenne",
            "10,1,1 11,1,1 12,1,1 | 3/3 abc RS-232 2 | - | - | G-Cx");
        row("previous at the first", "10 11 12", 1, "=abc b_Prev_antenne",
            "10,1,1 11,1,1 12,1,1 | 1/3 abc RS-232 2 | - | - | G-Cx");
        // The store refuses 2047 though the fields accept it; the move stops.
        row("next refused", "10 11 12", 2, "=2047 b_Next_antenne",
            "10,1,1 11,1,1 12,1,1 | 2/3 9999 RS-232 2 | - | Invalid Sat ID | G-Cx");
        row("previous refused", "10 11 12", 2, "=12a b_Prev_antenne",
            "10,1,1 11,1,1 12,1,1 | 2/3 9999 RS-232 2 | - | Invalid Sat ID | G-Cx");
        // A move stores this satellite alone (grey counts as active, RS-485 does not spread),
        // shows the neighbour, asks for the link status and disables b_Config until a status.
        row("previous", "0 1 2,1,0", 3, "=20,RS-485,1 b_Prev_antenne",
            "0,1,1 1,1,1 20,0,1 | 2/3 1 RS-232 2 | Com port inactive | Ready | GA-v");
        // Only interface 1 shows as RS-232, any flag but 0 as active; the satellite shown is
        // the first with the Sat ID; 9999 cannot be queried.
        row("next, 2 and -1", "1,1,0 2,2,-1", 1, "b_Next_antenne",
            "1,1,0 2,2,-1 | 2/2 2 RS-485 2 | Com port inactive | Ready | GA-v");
        row("next, same Sat ID", "5 5,0,0", 1, "b_Next_antenne",
            "5,1,1 5,0,0 | 2/2 5 RS-232 2 | Com port inactive | Ready | GA-v");
        row("next, 9999", "0,0,0 9999", 1, "b_Next_antenne",
            "0,0,0 9999,1,1 | 2/2 9999 RS-232 2 | Com port inactive | Ready | ---v");
        // The focus handlers take digits only, below 2000 or 2047, an empty Text3 meaning
        // 2047; a refusal shows 9999, disables the queries and writes nothing.
        const char *refused = "7,1,1 8,1,1 | 2/2 9999 RS-232 2 | - | Invalid Sat ID | --Cx";
        const char *overflow =
            "7,1,1 8,1,1 | 2/2 32768 RS-232 2 | - | Run-time error 6: Overflow | G-Cx";
        row("Text3 writes the Sat ID alone", "7 8", 2, "=0012,RS-485,0 Text3",
            "7,1,1 12,1,1 | 2/2 0012 RS-485 0 | - | - | GACx");
        row("Text3 empty", "7 8", 2, "= Text3",
            "7,1,1 2047,1,1 | 2/2 2047 RS-232 2 | - | - | GACx");
        row("Text3 2048", "7 8", 2, "=2048 Text3", refused);
        row("C_Interface empty", "7 8", 2, "= C_Interface", refused);
        row("C_Interface refused", "7 8", 2, "=12a,RS-485 C_Interface",
            "7,1,1 8,1,1 | 2/2 9999 RS-485 2 | - | Invalid Sat ID | --Cx");
        // RS-485, or anything but the exact "RS-232", puts the whole list on RS-485; the Sat
        // ID goes along, the active flag does not. RS-232 is for this satellite only.
        row("C_Interface RS-485", "7 8", 2, "=2047,RS-485,0 C_Interface",
            "7,0,1 2047,0,1 | 2/2 2047 RS-485 0 | - | - | GACx");
        // The box keeps "rs-232" as typed: what it shows is what was written.
        row("C_Interface rs-232", "7 8", 2, "=24,rs-232 C_Interface",
            "7,0,1 24,0,1 | 2/2 24 rs-232 2 | - | - | GACx");
        row("C_Interface RS-232", "7,0 8,0", 2, "=24,RS-232 C_Interface",
            "7,0,1 24,1,1 | 2/2 24 RS-232 2 | - | - | GACx");
        // Check1 writes this satellite's three fields; grey counts as active.
        row("Check1", "7 8,1,0", 2, "=22,RS-485,1 Check1",
            "7,1,1 22,0,1 | 2/2 22 RS-485 1 | - | - | GACx");
        // Beyond 16 bits a handler ends where the number is converted, the store's too.
        row("Check1 32768", "7 8", 2, "=32768 Check1", overflow);
        // The store behind Insert leaves the queries alone.
        row("store 2000", "7 8", 2, "=2000 b_Insert",
            "7,1,1 8,1,1 | 2/2 9999 RS-232 2 | - | Invalid Sat ID | G-Cx");
        row("store 32768", "7 8", 2, "=32768 b_Insert", overflow);
        row("French insert", "7 8", 2, "m_French b_Insert",
            "7,1,1 8,1,1 9,0,0 | 3/3 9 RS-232 2 | Inactif | Insertion du Norvale 9 | G-Cv");
        row("French refusal", "7 8", 2, "m_French =12a Text3",
            "7,1,1 8,1,1 | 2/2 9999 RS-232 2 | Inactif | Sat ID non valide | --Cx");
    }

    void edit() {
        QFETCH(QString, list);
        QFETCH(int, position);
        QFETCH(QString, actions);
        QFETCH(QString, state);
        Editor h;
        h.load(list, position);
        for (const QString &action : actions.split(u' ')) {
            if (action.startsWith(u'='))
                h.type(action.mid(1));
            else
                h.act(action);
        }
        QCOMPARE(h.editor(), state);
    }

    void insertStopsAtPosition16() {
        MainHarness h;
        for (int i = 0; i < 15; ++i)
            h.click("b_Insert");
        // From 15 a 17th is still appended: only the position counts.
        h.act("Text3=15 b_Prev_antenne b_Insert");
        QCOMPARE(h.state({"l_index", "Text3"}), "16/17 | 15");
        // At 16 refused before the fields are even looked at; Next stays below 16.
        h.act("Text3=abc b_Insert b_Next_antenne");
        QCOMPARE(h.state({"l_index", "Text3", "StatusPanel2"}), "16/17 | abc | Too many Norvales");
        QCOMPARE(h.net().Satellites().Count(), 17);
    }

    // Satellite 1, on the air, detected on the satellite tab; then the steps (see
    // MainHarness::act). Text3, what panel 2 said, the control's satellites, the calls
    // made and the network view.
    void commands_data() {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("state");
        const auto row = [](const char *name, const char *steps, const char *state) {
            QTest::newRow(name) << QString::fromLatin1(steps) << QString::fromUtf8(state);
        };
        // Sent to the Sat ID the satellite answered to; after the wait it is detected
        // under the new one, which it now answers to.
        row("configure", "Text3=12 C_Interface=RS-232 Check1=2 b_Config",
            "12 | Norvale configuration12,Ready | 12/1/1 | Configure 1 12,Detect 12,RequestConfig "
            "12,RequestStatus 12 | 12,RS-232,1,2.5,28 Ko,30 Ko");
        // Only a plain tick configures the satellite active.
        row("grey", "Text3=12 C_Interface=RS-232 Check1=1 b_Config",
            "12 | Norvale configuration12,Ready | 12/1/0 | Configure 1 12,Detect 12,RequestConfig "
            "12,RequestStatus 12 | 12,RS-232,0,2.5,28 Ko,30 Ko");
        row("RS-485, French", "m_French ~log Text3=12 C_Interface=RS-485 Check1=2 b_Config",
            "12 | Configuration du Norvale 12,Prêt | 12/0/1 | Configure 1 12,Detect 12,"
            "RequestConfig 12,RequestStatus 12 | 12,RS-485,1,2.5,28 Ko,30 Ko");
        // Refused, unlike by the fields, without writing 9999: 2047 too.
        for (const char *typed : {"2047", "0002000", "12a", "-1"})
            row(typed, qPrintable(QStringLiteral("Text3=%1 b_Config").arg(typed)),
                qPrintable(
                    QStringLiteral("%1 | Invalid Sat ID | 1/1/1 |  | 1,RS-232,1,2.5,28 Ko,30 Ko")
                        .arg(typed)));
        row("beyond 16 bits", "Text3=65536 b_Config",
            "65536 | Run-time error 6: Overflow | 1/1/1 |  | 1,RS-232,1,2.5,28 Ko,30 Ko");
        // With an error pending the satellite object is written, under the Sat ID it
        // answered to, and nothing is sent.
        row("error pending",
            "Text3=7 Text3 C_Interface=RS-485 Check1=0 ~error:5:Bad_CRC ~log b_Config",
            "7 | Error :5 | 1/0/0 |  | ,,,,,");
        // Show configuration is held back silently; Detect is sent all the same and
        // ends the read-back mode: a configuration answer that follows is not shown.
        row("queries with an error pending",
            "Text3=2 Text3 b_GetConfig ~error:4:Noise ~log b_GetConfig b_Alive ~config:2",
            "2 |  | 2/1/1 | Detect 2 | ,,,,,");
    }

    void commands() {
        QFETCH(QString, steps);
        QFETCH(QString, state);
        MainHarness h({}, onAir({{.satId = 1}}));
        h.act("Onglet1=1 Text3=1 Text3 b_Alive ~log " + steps);
        QCOMPARE(h.state({"Text3", "said", "sats", "log", "MFG1"}), state);
        QCOMPARE(h.net().onAir(1).has_value(), !state.contains(u"Configure"));
    }

    // A second Configure during the wait of the first: both waits end with the second's.
    void configureDuringTheWait() {
        MainHarness h({}, onAir({{.satId = 1}}));
        h.act("Onglet1=1 Text3=1 Text3 b_Alive ~log Text3=12");
        TickHook ticks(h.w<QTimer>("Timer1"), [&](int tick) {
            if (tick == 2) {
                QTimer::singleShot(0, &h.main(), [&] {
                    h.w<QLineEdit>("Text3")->setText("13");
                    h.click("b_Config");
                });
            }
        });
        h.click("b_Config");
        QVERIFY(h.settle());
        // The second message is addressed to Sat ID 1, which has just become 12: no
        // satellite takes it, and nothing answers to 13. Satellite 12's configuration
        // is not for the 13 shown.
        QCOMPARE(h.state({"said", "sats", "log"}),
                 "Norvale configuration12,Norvale configuration13 | 12/1/1 | Configure 1 "
                 "12,Configure 1 13,Detect 13,Detect 12,RequestConfig 12");
        QVERIFY(h.net().onAir(12) && !h.net().onAir(13));
    }
};

QTEST_MAIN(tst_Satellites)
#include "tst_satellites.moc"
