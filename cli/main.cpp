// norvale-cli: commissioning a Norvale radio network from the command line.

#include "cli/Commands.h"
#include "cli/Usage.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <cstdio>
#include <exception>
#include <memory>

int main(int argc, char *argv[]) {
    // A PDF report is painted with QtGui, which needs a platform: the offscreen one,
    // unless one is set. Everything else starts without it, so that check is quick.
    std::unique_ptr<QCoreApplication> app;
    if (asksForPdf(argc, argv)) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        app = std::make_unique<QGuiApplication>(argc, argv);
    } else {
        app = std::make_unique<QCoreApplication>(argc, argv);
    }
    try {
        return runCommandLine(QCoreApplication::arguments().mid(1));
    } catch (const std::exception &error) {
        std::fprintf(stderr, "norvale-cli: %s\n", error.what());
        return 1;
    }
}
