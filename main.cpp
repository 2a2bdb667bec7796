#include "app/Main.h"

#include "radionet/NetworkChoice.h"
#include "radionet/RadioNetControl.h"

#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QStringList>
#include <cstdio>

int main(int argc, char *argv[]) {
    QApplication app(argc, argv);
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        icon.addFile(QStringLiteral(":/icons/hicolor/%1x%1/apps/norvale-setup.png").arg(size));
    QApplication::setWindowIcon(icon);
    // The raw command line after the program name, as the start-up rule reads it.
    const QString commandLine = QApplication::arguments().mid(1).join(u' ');
    const QString folder = QApplication::applicationDirPath();
    // "Setup.ini" says which network: the simulator unless [Network] asks for the line.
    QString problem;
    std::unique_ptr<RadioNetControl> network =
        makeNetwork(readNetworkChoice(QDir(folder).filePath(QStringLiteral("Setup.ini"))), problem);
    if (!problem.isEmpty())
        std::fprintf(stderr, "%s\n", qPrintable(problem));
    Main window(network.release(), folder, commandLine);
    window.show();
    return app.exec();
}
