// The floor of the start-up figures: a bare main window holding one widget of each
// class the program's window uses, at the same size, and nothing else: no rules,
// no files, no network, no texts. Whatever Qt itself costs to start such a window
// is in here; whatever the program adds is not.
#include "StartupProbe.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

int main(int argc, char *argv[]) {
    QApplication app(argc, argv);
    QMainWindow window;
    window.resize(900, 560);

    QMenu *menu = window.menuBar()->addMenu(QStringLiteral("&File"));
    menu->addAction(QStringLiteral("&Open"));

    auto *tabs = new QTabWidget;
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    auto *group = new QGroupBox(QStringLiteral("Group"));
    auto *groupLayout = new QVBoxLayout(group);
    groupLayout->addWidget(new QLabel(QStringLiteral("Label")));
    auto *combo = new QComboBox;
    combo->setEditable(true);
    groupLayout->addWidget(combo);
    groupLayout->addWidget(new QLineEdit);
    groupLayout->addWidget(new QCheckBox(QStringLiteral("Check")));
    groupLayout->addWidget(new QPushButton(QStringLiteral("Button")));
    layout->addWidget(group);
    layout->addWidget(new QTableWidget);
    tabs->addTab(page, QStringLiteral("Tab"));
    window.setCentralWidget(tabs);
    window.statusBar()->addWidget(new QLabel(QStringLiteral("Status")));

    window.show();
    reportWhenReady(window);
    return app.exec();
}
