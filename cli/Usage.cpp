#include "cli/Usage.h"

#include "cli/Console.h"
#include "commissioning/Wording.h"
#include "config/IniFile.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <array>
#include <cstring>

namespace {

using Command = Invocation::Command;

struct OptionInfo {
    const char *name;
    const char *value; // the value's name in the help; nullptr: a switch
    const char *help;  // text key
};

// Every option of every command; the commands pick theirs by name.
constexpr std::array options{
    OptionInfo{"json", nullptr, "CliOptJson"},
    OptionInfo{"sat", "ID", "CliOptSat"},
    OptionInfo{"new-id", "N", "CliOptNewId"},
    OptionInfo{"interface", "RS-232|RS-485", "CliOptInterface"},
    OptionInfo{"enabled", "0|1", "CliOptEnabled"},
    OptionInfo{"rounds", "N", "CliOptRounds"},
    OptionInfo{"report", "FILE.html|.pdf|.json", "CliOptReport"},
    OptionInfo{"link", "simulated|serial", "CliOptLink"},
    OptionInfo{"port", "DEVICE", "CliOptPort"},
    OptionInfo{"baud", "N", "CliOptBaud"},
    OptionInfo{"timeout", "MS", "CliOptTimeout"},
    OptionInfo{"scenario", "FILE", "CliOptScenario"},
    OptionInfo{"lang", "en|fr", "CliOptLang"},
    OptionInfo{"help", nullptr, "CliOptHelp"},
};

const QStringList networkOptions{"link", "port", "baud", "timeout", "scenario"};

struct CommandInfo {
    const char *name;
    Command command;
    const char *arguments; // as the help shows them
    qsizetype minFiles, maxFiles;
    QStringList options;  // beyond --lang and --help
    QStringList required; // options that must be given
    const char *help;     // text key
};

const std::array<CommandInfo, 8> &commands() {
    static const std::array<CommandInfo, 8> all{
        CommandInfo{"check", Command::Check, "FILE...", 1, 1 << 20, {}, {}, "CliCmdCheck"},
        CommandInfo{"show", Command::Show, "FILE [--json]", 1, 1, {"json"}, {}, "CliCmdShow"},
        CommandInfo{"diff", Command::Diff, "FILE FILE", 2, 2, {}, {}, "CliCmdDiff"},
        CommandInfo{"detect",
                    Command::Detect,
                    "[--sat ID]",
                    0,
                    0,
                    QStringList{"sat"} + networkOptions,
                    {},
                    "CliCmdDetect"},
        CommandInfo{"read",
                    Command::Read,
                    "--sat ID",
                    0,
                    0,
                    QStringList{"sat"} + networkOptions,
                    {"sat"},
                    "CliCmdRead"},
        CommandInfo{"survey",
                    Command::Survey,
                    "FILE [--report FILE]",
                    1,
                    1,
                    QStringList{"report"} + networkOptions,
                    {},
                    "CliCmdSurvey"},
        CommandInfo{"configure",
                    Command::Configure,
                    "--sat ID --new-id N",
                    0,
                    0,
                    QStringList{"sat", "new-id", "interface", "enabled"} + networkOptions,
                    {"sat", "new-id"},
                    "CliCmdConfigure"},
        CommandInfo{"test",
                    Command::Test,
                    "FILE --rounds N",
                    1,
                    1,
                    QStringList{"rounds", "report"} + networkOptions,
                    {"rounds"},
                    "CliCmdTest"},
    };
    return all;
}

const CommandInfo *commandNamed(const QString &name) {
    for (const CommandInfo &entry : commands()) {
        if (name == QLatin1String(entry.name))
            return &entry;
    }
    return nullptr;
}

const OptionInfo *optionNamed(const QString &name) {
    for (const OptionInfo &entry : options) {
        if (name == QLatin1String(entry.name))
            return &entry;
    }
    return nullptr;
}

// A whole number from low to high, written in digits only.
std::optional<qint64> number(const QString &text, qint64 low, qint64 high) {
    if (!IsDigitString(text) || text.size() > 12)
        return std::nullopt;
    const qint64 value = text.toLongLong();
    if (value < low || value > high)
        return std::nullopt;
    return value;
}

// The value of an option checked; false, with the line that says why, when it is
// not what the option takes.
class Values {
public:
    Values(const QCommandLineParser &parser, const Wording &words, QString &error)
        : parser_(parser)
        , words_(words)
        , error_(error) {}

    bool has(const char *name) const { return parser_.isSet(QLatin1String(name)); }
    QString text(const char *name) const { return parser_.value(QLatin1String(name)); }

    template <typename T>
    bool number(const char *name, qint64 low, qint64 high, const char *expected, T &out) {
        if (!has(name))
            return true;
        const auto value = ::number(text(name), low, high);
        if (!value)
            return refuse(name, expected);
        out = T(*value);
        return true;
    }
    bool refuse(const char *name, const char *expected) {
        return refuse(words_("CliBadValue", QLatin1String(name), words_(expected), text(name)));
    }
    bool refuse(const QString &why) {
        error_ = why;
        return false;
    }
    bool refuse(const char *key) { return refuse(words_(key)); }

private:
    const QCommandLineParser &parser_;
    const Wording &words_;
    QString &error_;
};

bool readValues(Values &v, Invocation &inv) {
    if (!v.number("sat", 0, 2047, "CliExpectSat", inv.satId) ||
        !v.number("new-id", 0, 1999, "CliExpectNewId", inv.newSatId) ||
        !v.number("enabled", 0, 1, "CliExpectEnabled", inv.enabled) ||
        !v.number("rounds", 1, 1000000, "CliExpectRounds", inv.rounds) ||
        !v.number("timeout", 1, 32767, "CliExpectTimeout", inv.link.timeOutMs))
        return false;
    if (v.has("interface")) {
        const QString name = v.text("interface").toUpper();
        if (name != u"RS-232" && name != u"RS-485")
            return v.refuse("interface", "CliExpectInterface");
        inv.interfaceCode = name == u"RS-232" ? 1 : 0;
    }
    if (v.has("baud")) {
        qint64 baud = 0;
        if (!v.number("baud", 1, 100000000, "CliExpectBaud", baud))
            return false;
        inv.link.baudRate = QString::number(baud);
    }
    if (v.has("report")) {
        inv.report = v.text("report");
        const QString suffix = QFileInfo(inv.report).suffix().toLower();
        if (suffix != u"html" && suffix != u"pdf" && suffix != u"json")
            return v.refuse("report", "CliExpectReport");
    }
    if (v.has("link")) {
        const QString link = v.text("link").toLower();
        if (link != u"simulated" && link != u"serial")
            return v.refuse("link", "CliExpectLink");
        inv.link.choice.link =
            link == u"serial" ? NetworkChoice::Link::Serial : NetworkChoice::Link::Simulated;
    }
    if (v.has("port")) {
        if (v.text("port").trimmed().isEmpty())
            return v.refuse("port", "CliExpectPort");
        inv.link.port = v.text("port");
    }
    if (v.has("scenario")) {
        if (inv.link.choice.link == NetworkChoice::Link::Serial)
            return v.refuse("CliScenarioSerial");
        inv.link.choice.scenario = v.text("scenario");
    }
    return true;
}

} // namespace

OwnTexts::Language languageOf(const QStringList &arguments, const QString &lang) {
    OwnTexts::Language language =
        lang.startsWith(QLatin1String("fr")) ? OwnTexts::French : OwnTexts::English;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        QString value;
        if (arguments[i].startsWith(QLatin1String("--lang=")))
            value = arguments[i].mid(7);
        else if (arguments[i] == u"--lang" && i + 1 < arguments.size())
            value = arguments[i + 1];
        if (value == u"fr")
            language = OwnTexts::French;
        else if (value == u"en")
            language = OwnTexts::English;
    }
    return language;
}

std::optional<Invocation> parseArguments(const QStringList &arguments, OwnTexts::Language language,
                                         const Wording &words, QString &error) {
    QCommandLineParser parser;
    for (const OptionInfo &entry : options) {
        QStringList names{QLatin1String(entry.name)};
        if (std::strcmp(entry.name, "help") == 0)
            names.prepend(QStringLiteral("h"));
        parser.addOption(entry.value
                             ? QCommandLineOption(names, QString(), QLatin1String(entry.value))
                             : QCommandLineOption(names));
    }
    // Qt's own message for a value left out is English only.
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const OptionInfo *entry = arguments[i].startsWith(QLatin1String("--"))
                                      ? optionNamed(arguments[i].mid(2))
                                      : nullptr;
        if (entry && entry->value && i + 1 == arguments.size()) {
            error = words("CliNeedsValue", arguments[i]);
            return std::nullopt;
        }
    }
    if (!parser.parse(QStringList{QStringLiteral("norvale-cli")} + arguments)) {
        const QStringList unknown = parser.unknownOptionNames();
        if (unknown.isEmpty())
            error = parser.errorText();
        else
            error = words("CliUnknownOption",
                          QString(unknown.first().size() == 1 ? "-" : "--") + unknown.first());
        return std::nullopt;
    }

    Invocation inv;
    inv.language = language;
    QStringList positional = parser.positionalArguments();
    if (parser.isSet(QStringLiteral("lang")) && parser.value(QStringLiteral("lang")) != u"en" &&
        parser.value(QStringLiteral("lang")) != u"fr") {
        error = words("CliBadValue", QStringLiteral("lang"), words("CliExpectLang"),
                      parser.value(QStringLiteral("lang")));
        return std::nullopt;
    }
    if (positional.isEmpty()) {
        if (parser.isSet(QStringLiteral("help")))
            return inv;
        error = words("CliNoCommand");
        return std::nullopt;
    }
    inv.name = positional.takeFirst();
    if (inv.name == u"help") {
        if (positional.size() > 1 || (!positional.isEmpty() && !commandNamed(positional[0]))) {
            error = words("CliUnknownCommand", positional.value(positional.size() > 1 ? 1 : 0));
            return std::nullopt;
        }
        inv.helpFor = positional.value(0);
        return inv;
    }
    const CommandInfo *command = commandNamed(inv.name);
    if (!command) {
        error = words("CliUnknownCommand", inv.name);
        return std::nullopt;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        inv.helpFor = inv.name;
        return inv;
    }
    inv.command = command->command;

    // An option that is not this command's: name the command it belongs to.
    for (const QString &name : parser.optionNames()) {
        const QString longName = name == u"h" ? QStringLiteral("help") : name;
        if (longName == u"lang" || longName == u"help" || command->options.contains(longName))
            continue;
        for (const CommandInfo &other : commands()) {
            if (other.options.contains(longName)) {
                error = words("CliOptionElsewhere", longName, QLatin1String(other.name), inv.name);
                return std::nullopt;
            }
        }
    }
    if (positional.size() < command->minFiles) {
        error = words(command->minFiles == 2 ? "CliNeedsTwoFiles" : "CliNeedsFile", inv.name);
        return std::nullopt;
    }
    if (positional.size() > command->maxFiles) {
        error = words("CliExtraArgument", inv.name, positional[command->maxFiles]);
        return std::nullopt;
    }
    for (const QString &name : command->required) {
        if (!parser.isSet(name)) {
            error = words("CliNeedsOption", inv.name, name);
            return std::nullopt;
        }
    }
    inv.files = positional;
    inv.json = parser.isSet(QStringLiteral("json"));
    Values values(parser, words, error);
    if (!readValues(values, inv))
        return std::nullopt;
    return inv;
}

QString helpText(const QString &command, const Wording &words) {
    QStringList lines;
    const auto optionLines = [&](const QStringList &names) {
        QList<QStringList> rows;
        for (const QString &name : names) {
            const OptionInfo *entry = optionNamed(name);
            QString form = QStringLiteral("  --") + name;
            if (entry->value)
                form += u' ' + QLatin1String(entry->value);
            rows.append({form, words(entry->help)});
        }
        return rows;
    };
    QList<QStringList> rows;
    if (const CommandInfo *entry = commandNamed(command)) {
        QString usage = QStringLiteral("norvale-cli ") + command;
        if (*entry->arguments)
            usage += u' ' + QLatin1String(entry->arguments);
        lines << words("CliUsage", usage + QStringLiteral(" [options]")) << QString()
              << words(entry->help) << QString() << words("CliOptions");
        rows = optionLines(entry->options + QStringList{"lang", "help"});
    } else {
        lines << words("CliUsage", QStringLiteral("norvale-cli COMMAND [options]")) << QString()
              << words("CliProgram") << QString() << words("CliCommands");
        for (const CommandInfo &entry : commands())
            rows.append({QStringLiteral("  ") + QLatin1String(entry.name) + u' ' +
                             QLatin1String(entry.arguments),
                         words(entry.help)});
        rows.append({QString()});
        rows.append({words("CliOptions")});
        rows += optionLines(networkOptions + QStringList{"lang", "help"});
    }
    lines += Console::aligned(rows);
    lines << QString() << words("CliExitCodes");
    return lines.join(u'\n');
}

bool asksForPdf(int argc, const char *const *argv) {
    for (int i = 1; i < argc; ++i) {
        const QString arg = QString::fromLocal8Bit(argv[i]);
        QString value;
        if (arg.startsWith(QLatin1String("--report=")))
            value = arg.mid(9);
        else if (arg == u"--report" && i + 1 < argc)
            value = QString::fromLocal8Bit(argv[i + 1]);
        if (value.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive))
            return true;
    }
    return false;
}
