#pragma once

#include "cli/Console.h"
#include "cli/Usage.h"

struct ConfigProblem;

// norvale-cli's exit codes.
enum ExitCode { Success = 0, Different = 1, BadUsage = 2, LinkFailed = 3 };

// The whole program but the choice of application object: the arguments after the
// program name in, the exit code out.
int runCommandLine(const QStringList &arguments, const PdfModule *pdf);

// The commands on files: the reader's own rules, nothing sent anywhere.
int runCheck(const Invocation &inv, Console &console);
int runShow(const Invocation &inv, Console &console);
int runDiff(const Invocation &inv, Console &console);

// The commands on a network.
int runDetect(const Invocation &inv, Console &console);
int runRead(const Invocation &inv, Console &console);
int runSurvey(const Invocation &inv, Console &console);
int runConfigure(const Invocation &inv, Console &console);
int runTest(const Invocation &inv, Console &console);

// "FILE:LINE: what is wrong and what is expected", in the console's language.
QString problemText(const Console &console, const QString &file, const ConfigProblem &why);
