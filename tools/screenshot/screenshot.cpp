// Shows the real main window on the network its folder's "Setup.ini" names, as
// main.cpp does, with an optional configuration file on its command line and a port
// typed into the Port box; drives it to a tab (and, for the test tab, through a
// running live test; for "log", the network log window over that live test), and
// saves what the X screen shows. Run under Xvfb by tools/screenshots.sh.
#include "app/Main.h"
#include "radionet/NetworkChoice.h"
#include "radionet/RadioNetControl.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
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
        std::fprintf(stderr, "usage: norvale-screenshot <program folder> <tab 0|1|test|log> <png> "
                             "[file.nvl [port]]\n");
        return 2;
    }
    QString problem;
    std::unique_ptr<RadioNetControl> network = makeNetwork(
        readNetworkChoice(QDir(args[1]).filePath(QStringLiteral("Setup.ini"))), problem);
    const QString file = args.value(4);
    Main window(network.release(), args[1], file);
    window.resize(960, 600);
    window.show();
    waitUntil([&] { return window.windowHandle() && window.windowHandle()->isExposed(); }, 5000);
    QFocusEvent leave(QEvent::FocusOut, Qt::TabFocusReason);
    if (args.size() > 5) { // the port, typed in and left, as the technician does
        auto *port = window.findChild<QComboBox *>("C_port");
        port->setCurrentText(args[5]);
        QCoreApplication::sendEvent(port, &leave);
    }

    auto *tabs = window.findChild<QTabWidget *>("Onglet1");
    auto *mfg2 = window.findChild<QTableWidget *>("MFG2");
    const QString tab = args[2];
    if (tab == QLatin1String("1")) {
        tabs->setCurrentIndex(1);
        // Detect a satellite of the demo network and read it back.
        auto *text3 = window.findChild<QLineEdit *>("Text3");
        if (file.isEmpty()) { // else the file's first satellite
            text3->setText(QStringLiteral("2"));
            QCoreApplication::sendEvent(text3, &leave); // as the technician tabs out of it
        }
        window.findChild<QAbstractButton *>("b_Alive")->click();
        auto *mfg1 = window.findChild<QTableWidget *>("MFG1");
        waitUntil([&] { return !mfg1->item(4, 1)->text().isEmpty(); }, 5000);
    } else if ((tab == QLatin1String("test") || tab == QLatin1String("log")) && !file.isEmpty()) {
        // The file's satellites: every one on the air answers, the others stay at
        // "Attempt" once each has been asked.
        tabs->setCurrentIndex(2);
        window.findChild<QAbstractButton *>("b_Debut_test")->click();
        waitUntil(
            [&] {
                for (int row = 1; row < mfg2->rowCount(); ++row)
                    if (mfg2->item(row, 1) && mfg2->item(row, 1)->text().contains(u"Nothing"))
                        return false;
                return true;
            },
            15000);
        settle(1000);
    } else if (tab == QLatin1String("test") || tab == QLatin1String("log")) {
        // Three satellites in the list, then the live test.
        window.findChild<QLineEdit *>("Text3")->setText(QStringLiteral("1"));
        tabs->setCurrentIndex(1);
        window.findChild<QAbstractButton *>("b_Insert")->click();
        window.findChild<QAbstractButton *>("b_Insert")->click();
        tabs->setCurrentIndex(2);
        window.findChild<QAbstractButton *>("b_Debut_test")->click();
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
