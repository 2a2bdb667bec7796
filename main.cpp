#include "app/Main.h"

#include "radionet/SimulatedRadioNet.h"

#include <QApplication>
#include <QIcon>
#include <QStringList>

int main(int argc, char *argv[]) {
    QApplication app(argc, argv);
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        icon.addFile(QStringLiteral(":/icons/hicolor/%1x%1/apps/norvale-setup.png").arg(size));
    QApplication::setWindowIcon(icon);
    // The raw command line after the program name, as the start-up rule reads it.
    const QString commandLine = QApplication::arguments().mid(1).join(u' ');
    Main window(new SimulatedRadioNet, QApplication::applicationDirPath(), commandLine);
    window.show();
    return app.exec();
}
