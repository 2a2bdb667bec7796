#include "cli/Commands.h"

#include <QtGlobal>

int runCommandLine(const QStringList &arguments, const PdfModule *pdf) {
    const OwnTexts::Language language = languageOf(arguments, qEnvironmentVariable("LANG"));
    Console console(language);
    QString error;
    std::optional<Invocation> inv = parseArguments(arguments, language, console.words(), error);
    if (!inv) {
        console.err(QStringLiteral("norvale-cli: ") + error);
        return BadUsage;
    }
    inv->pdf = pdf;
    using Command = Invocation::Command;
    switch (inv->command) {
    case Command::Help:
        console.out(helpText(inv->helpFor, console.words()));
        return Success;
    case Command::Check:
        return runCheck(*inv, console);
    case Command::Show:
        return runShow(*inv, console);
    case Command::Diff:
        return runDiff(*inv, console);
    case Command::Detect:
        return runDetect(*inv, console);
    case Command::Read:
        return runRead(*inv, console);
    case Command::Survey:
        return runSurvey(*inv, console);
    case Command::Configure:
        return runConfigure(*inv, console);
    case Command::Test:
        break;
    }
    return runTest(*inv, console);
}
