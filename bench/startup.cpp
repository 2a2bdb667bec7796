// The program's own start-up, made exactly as main.cpp makes it, with the same
// ready probe as the floor program.
#include "StartupProbe.h"
#include "app/Main.h"
#include "radionet/SimulatedRadioNet.h"

#include <QApplication>
#include <QStringList>

int main(int argc, char *argv[]) {
    QApplication app(argc, argv);
    const QString commandLine = QApplication::arguments().mid(1).join(u' ');
    Main window(new SimulatedRadioNet, QApplication::applicationDirPath(), commandLine);
    window.show();
    reportWhenReady(window);
    return app.exec();
}
