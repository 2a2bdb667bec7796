// Shows the real main window on the default simulated network, drives it to a
// tab (and, for the test tab, through a running live test; for "log", the network
// log window over that live test), and saves what the X screen shows. Run under
// Xvfb by tools/screenshots.sh.
#include "app/Main.h"
#include "radionet/SimulatedRadioNet.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFocusEvent>
#include <QLineEdit>
#include <QScreen>
#include <QTabWidget>
#include <QTableWidget>
#include <QWindow>
#include <cstdio>

namespace {

void waitUntil(const std::function<bool()> &done, int ms) {
    QElapsedTimer timer;
    timer.start();
    while (!done() && timer.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
}

void settle(int ms) {
    waitUntil([] { return false; }, ms);
}

} // namespace

int main(int argc, char *argv[]) {
    QApplication app(argc, argv);
    const QStringList args = QApplication::arguments();
    if (args.size() < 4) {
        std::fprintf(stderr,
                     "usage: norvale-screenshot <program folder> <tab 0|1|test|log> <png>\n");
        return 2;
    }
    Main window(new SimulatedRadioNet, args[1], QString());
    window.resize(960, 600);
    window.show();
    waitUntil([&] { return window.windowHandle() && window.windowHandle()->isExposed(); }, 5000);

    auto *tabs = window.findChild<QTabWidget *>("Onglet1");
    const QString tab = args[2];
    if (tab == QLatin1String("1")) {
        tabs->setCurrentIndex(1);
        // Detect the first satellite of the demo network and read it back.
        auto *text3 = window.findChild<QLineEdit *>("Text3");
        text3->setText(QStringLiteral("2"));
        QFocusEvent leave(QEvent::FocusOut, Qt::TabFocusReason);
        QCoreApplication::sendEvent(text3, &leave); // as the technician tabs out of it
        window.findChild<QAbstractButton *>("b_Alive")->click();
        auto *mfg1 = window.findChild<QTableWidget *>("MFG1");
        waitUntil([&] { return !mfg1->item(4, 1)->text().isEmpty(); }, 5000);
    } else if (tab == QLatin1String("test") || tab == QLatin1String("log")) {
        // Three satellites in the list, then the live test.
        window.findChild<QLineEdit *>("Text3")->setText(QStringLiteral("1"));
        tabs->setCurrentIndex(1);
        window.findChild<QAbstractButton *>("b_Insert")->click();
        window.findChild<QAbstractButton *>("b_Insert")->click();
        tabs->setCurrentIndex(2);
        window.findChild<QAbstractButton *>("b_Debut_test")->click();
        auto *mfg2 = window.findChild<QTableWidget *>("MFG2");
        waitUntil([&] { return mfg2->item(3, 1)->text().contains(QLatin1String("OK")); }, 10000);
    }
    QWidget *shown = &window;
    if (tab == QLatin1String("log")) {
        window.findChild<QAction *>("m_networkLog")->trigger();
        shown = window.findChild<QWidget *>("NetworkLogWindow");
        shown->move(window.pos() + QPoint(160, 120));
        auto *health = shown->findChild<QTableWidget *>("healthTable");
        waitUntil([&] { return health->rowCount() == 3; }, 5000);
        settle(1500); // a few batches of rows
    }
    settle(300);
    const QPixmap shot = shown->screen()->grabWindow(
        0, shown->x(), shown->y(), shown->frameGeometry().width(), shown->frameGeometry().height());
    if (!shot.save(args[3])) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(args[3]));
        return 1;
    }
    return 0;
}
