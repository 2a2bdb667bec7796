#include "app/Main.h"

#include "radionet/SimulatedRadioNet.h"

#include <QApplication>
#include <QStringList>

int main(int argc, char *argv[]) {
    QApplication app(argc, argv);
    // The raw command line after the program name, as the start-up rule reads it.
    const QString commandLine = QApplication::arguments().mid(1).join(u' ');
    Main window(new SimulatedRadioNet, QApplication::applicationDirPath(), commandLine);
    window.show();
    return app.exec();
}
