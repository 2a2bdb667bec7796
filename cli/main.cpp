// norvale-cli: commissioning a Norvale radio network from the command line.

#include "cli/Commands.h"
#include "cli/Usage.h"
#include "commissioning/PdfModule.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <cstdio>
#include <exception>
#include <memory>

int main(int argc, char *argv[]) {
    // A PDF report is painted by the module beside the program, which brings the
    // graphics libraries and their application object; everything else starts
    // without them, so that check is quick.
    PdfModule pdf(
        QFileInfo(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath()).path());
    std::unique_ptr<QCoreApplication> app;
    QString error;
    if (asksForPdf(argc, argv) && pdf.load(error))
        app.reset(pdf.makeApplication(argc, argv));
    else
        app = std::make_unique<QCoreApplication>(argc, argv);
    try {
        return runCommandLine(QCoreApplication::arguments().mid(1), &pdf);
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "norvale-cli: %s\n", failure.what());
        return 1;
    }
}
