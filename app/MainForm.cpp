#include "app/MainForm.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QTimer>

void MainForm::setupUi(QMainWindow *Main) {
    Ui::Main::setupUi(Main);
    for (QAction *separator : {mtiret1, mtiret2, mtiret3, mtiret4})
        separator->setSeparator(true);
    // The focus-leave handlers take the text exactly as typed: a time-out of "2" is
    // 2 ms, not the listed 20, and "rs-232" is not "RS-232". No completer, then, to
    // finish or re-case a text; the list still offers its items.
    for (QComboBox *combo : {C_port, C_timeout, C_Interface}) {
        combo->setInsertPolicy(QComboBox::NoInsert);
        combo->setCompleter(nullptr);
    }

    // Ours, beyond the design: last in the Options menu, its caption from our own texts.
    m_Options->addSeparator();
    m_networkLog = new QAction(Main);
    m_networkLog->setObjectName(QStringLiteral("m_networkLog"));
    m_Options->addAction(m_networkLog);

    Timer1 = new QTimer(Main);
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setInterval(50);
    Timer2 = new QTimer(Main);
    Timer2->setObjectName(QStringLiteral("Timer2"));
    Timer2->setInterval(500);

    StatusPanel1 = new QLabel(QStringLiteral("Statut"), StatusBar1);
    StatusPanel1->setObjectName(QStringLiteral("StatusPanel1"));
    StatusPanel1->setMinimumWidth(260);
    StatusPanel2 = new QLabel(QStringLiteral("OK"), StatusBar1);
    StatusPanel2->setObjectName(QStringLiteral("StatusPanel2"));
    StatusBar1->addWidget(StatusPanel1);
    StatusBar1->addWidget(StatusPanel2, 1);
    NetworkLabel = new QLabel(StatusBar1);
    NetworkLabel->setObjectName(QStringLiteral("NetworkLabel"));
    StatusBar1->addPermanentWidget(NetworkLabel);
}
