#include "support/MainHarness.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableView>
#include <QTableWidget>

namespace {

template <typename T = QWidget> T *in(QObject *parent, const char *name) {
    return parent->findChild<T *>(QLatin1String(name));
}

// A column of a table's rows, as shown.
QStringList column(QAbstractItemView *table, int col) {
    QStringList out;
    for (int row = 0; row < table->model()->rowCount(); ++row)
        out << table->model()->index(row, col).data().toString();
    return out;
}

// Save as CSV, its dialog answered with file as the user types it.
void saveAs(QWidget *window, const QString &file) {
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [&] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog || dialog->objectName() != QStringLiteral("logSaveDialog"))
            return;
        answer.stop();
        in<QLineEdit>(dialog, "fileNameEdit")->setText(file);
        static_cast<QDialog *>(dialog)->accept();
    });
    answer.start(5);
    in<QAbstractButton>(window, "saveCsv")->click();
}

} // namespace

class tst_NetworkLogWindow : public QObject {
    Q_OBJECT

private slots:
    // Opened from the menu during a live test: rows, health, filter, the CSV.
    void duringALiveTest() {
        MainHarness h({}, [](SimulatedRadioNet &net) { net.setAnswerDelayMs(5); });
        // Steps without the harness's settling, whose marker event the log would keep.
        h.w<QLineEdit>("Text3")->setText(QStringLiteral("1"));
        h.leave("Text3");
        h.net().Satellites().Add(2);
        h.net().Satellites().Add(3);
        h.w<QAction>("m_networkLog")->trigger();
        h.w<QAction>("m_networkLog")->trigger(); // raised, not opened twice
        QCOMPARE(h.main().findChildren<QWidget *>(QStringLiteral("NetworkLogWindow")).size(), 1);
        QWidget *window = h.w("NetworkLogWindow");
        auto *rows = in<QTableView>(window, "logTable");
        QVERIFY(window->isVisible());
        h.w<QTabWidget>("Onglet1")->setCurrentIndex(2);
        h.click("b_Debut_test");

        QTRY_VERIFY(column(rows, 3).contains("StatusReceived"));
        QTRY_COMPARE(column(in<QTableWidget>(window, "healthTable"), 0),
                     (QStringList{"1", "2", "3"}));
        // The rows followed to the end; scrolled up, the view stays on its rows.
        QScrollBar *bar = rows->verticalScrollBar();
        QVERIFY(bar->maximum() > 0 && bar->value() == bar->maximum());
        bar->setValue(bar->maximum() / 2);
        const QString top = rows->indexAt(QPoint(0, 0)).data().toString();
        const int end = bar->maximum();
        QTRY_VERIFY(bar->maximum() > end);
        QCOMPARE(rows->indexAt(QPoint(0, 0)).data().toString(), top);
        in<QLineEdit>(window, "logFilter")->setText(QStringLiteral("2"));
        QVERIFY(column(rows, 3).contains("StatusReceived"));
        QCOMPARE(column(rows, 2).filter(QRegularExpression("^2$")), column(rows, 2));

        h.click("b_Fin_Test");
        const QString file = h.folder().file(QStringLiteral("log.csv"));
        saveAs(window, file);
        const QStringList csv = QString::fromUtf8(h.folder().read(QStringLiteral("log.csv")))
                                    .split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(csv.value(0), QStringLiteral("time_ms,direction,sat_id,what,details,latency_ms"));
        QVERIFY(!csv.filter(",<-,3,StatusReceived,,").isEmpty());
        QCOMPARE(in<QLabel>(window, "saveStatus")->text(), "Saved to " + file);
        saveAs(window, QStringLiteral("/proc/log.csv")); // refused, and said so
        QVERIFY(
            in<QLabel>(window, "saveStatus")->text().startsWith("Not saved to /proc/log.csv: "));

        // Closed, nothing runs; asked for again, the same window comes back.
        window->close();
        QVERIFY(!in<QTimer>(window, "logTimer")->isActive());
        h.w<QAction>("m_networkLog")->trigger();
        QVERIFY(window->isVisible());
    }

    void captions_data() {
        QTest::addColumn<QStringList>("switches");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("English") << QStringList{"m_French", "m_English"}
                                 << QStringList{"Network log…", "Network log", "Sat ID"};
        QTest::newRow("French") << QStringList{"m_English", "m_French"}
                                << QStringList{"Journal du réseau…", "Journal du réseau", "ID Sat"};
    }
    // The item comes last in Options; its caption and the window's follow the language.
    void captions() {
        QFETCH(QStringList, switches);
        MainHarness h;
        QCOMPARE(h.w<QMenu>("m_Options")->actions().last(), h.w<QAction>("m_networkLog"));
        h.act("m_networkLog " + switches.join(u' '));
        QWidget *window = h.w("NetworkLogWindow");
        auto *health = in<QTableWidget>(window, "healthTable");
        QTEST((QStringList{h.w<QAction>("m_networkLog")->text(), window->windowTitle(),
                           health->horizontalHeaderItem(0)->text()}),
              "shown");
    }
};

QTEST_MAIN(tst_NetworkLogWindow)
#include "tst_networklogwindow.moc"
