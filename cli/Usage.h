#pragma once

#include "commissioning/NetSession.h"
#include "platform/OwnTexts.h"

#include <QString>
#include <QStringList>
#include <optional>

class PdfModule;
class Wording;

// What one run of norvale-cli is asked to do, its arguments checked.
struct Invocation {
    enum class Command { Help, Check, Show, Diff, Detect, Read, Survey, Configure, Test };
    Command command = Command::Help;
    QString name;    // the command's name as typed
    QString helpFor; // Help: the command whose help is asked, empty for the program's
    QStringList files;
    OwnTexts::Language language = OwnTexts::English;
    bool json = false;
    std::optional<qint16> satId, newSatId, interfaceCode;
    std::optional<qint32> enabled;
    int rounds = 0;
    QString report;
    LinkOptions link;
    const PdfModule *pdf = nullptr; // loaded when a PDF report is asked for
};

// The language of messages: --lang when it is there and good, else LANG's (French
// when it starts with "fr"), else English. Read before anything else, so that even a
// refusal of the arguments is in the technician's language.
OwnTexts::Language languageOf(const QStringList &arguments, const QString &lang);

// The arguments after the program name, checked; nothing, with the one line that
// says why in error, when they are not a good command line.
std::optional<Invocation> parseArguments(const QStringList &arguments, OwnTexts::Language language,
                                         const Wording &words, QString &error);

// The help of the program (command empty) or of one command.
QString helpText(const QString &command, const Wording &words);

// True when the arguments ask for a PDF report, which needs the painting of QtGui.
bool asksForPdf(int argc, const char *const *argv);
