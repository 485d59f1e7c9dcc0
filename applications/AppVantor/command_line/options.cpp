#include "options.h"

#include <process/exit_status.h>
#include <process/message_log.h>

#include <QCommandLineParser>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace {

using Subcommand = Options::Subcommand;

struct SubcommandHelp
{
    Subcommand subcommand;
    QString name;
    QString words;
    QString summary;
    QString details;
    QStringList options;
};

const std::vector<SubcommandHelp>& subcommands()
{
    const QStringList pictureOptions = {QStringLiteral("screenshot"), QStringLiteral("size"),
                                        QStringLiteral("scale"),      QStringLiteral("theme"),
                                        QStringLiteral("language"),   QStringLiteral("for")};
    static const std::vector<SubcommandHelp> all = {
        {Subcommand::Window, QStringLiteral("window"), QString(),
         QStringLiteral("the bench window: tools, maintenance page, board, orders"), QString(),
         QStringList{QStringLiteral("orders")} + pictureOptions},
        {Subcommand::Commands,
         QStringLiteral("commands"),
         QString(),
         QStringLiteral("the commands that the tool's plugin declares"),
         QString(),
         {}},
        {Subcommand::Channels,
         QStringLiteral("channels"),
         QString(),
         QStringLiteral("the tool's channels and their present values"),
         QString(),
         {}},
        {Subcommand::Run,
         QStringLiteral("run"),
         QStringLiteral("COMMAND [NAME=VALUE …]"),
         QStringLiteral("one order; a listening one until Ctrl-C, --for or --count"),
         QStringLiteral(
             "A VALUE that begins with [, { or \" is read as JSON, any other is a text that is converted to "
             "the parameter's type."),
         {QStringLiteral("for"), QStringLiteral("count")}},
        {Subcommand::Shell,
         QStringLiteral("shell"),
         QStringLiteral("[FILE …]"),
         QStringLiteral("orders from files or standard input, one a line; \"help\" lists what it knows"),
         QString(),
         {QStringLiteral("echo"), QStringLiteral("keep-going"), QStringLiteral("report")}},
        {Subcommand::Discover,
         QStringLiteral("discover"),
         QString(),
         QStringLiteral("the GPIO chips of this machine and their lines"),
         QString(),
         {QStringLiteral("config-for"), QStringLiteral("watch"), QStringLiteral("for")}},
        {Subcommand::Panel, QStringLiteral("panel"), QString(),
         QStringLiteral("the plugin's maintenance page alone"), QString(), pictureOptions},
    };
    return all;
}

std::vector<QCommandLineOption> globalOptions()
{
    return {
        {QStringLiteral("config"),
         QStringLiteral("Read the bench from FILE instead of the built-in example."), QStringLiteral("FILE")},
        {QStringLiteral("tool"), QStringLiteral("Work with the tool NAME instead of the first one."),
         QStringLiteral("NAME")},
        {QStringLiteral("json"),
         QStringLiteral("Write one JSON object a line, and nothing else, to standard output.")},
        {QStringLiteral("trace"), QStringLiteral("Record every level change in FILE, a Value Change Dump."),
         QStringLiteral("FILE.vcd")},
        {QStringLiteral("realtime"),
         QStringLiteral("Give the device a thread of its own with a real-time priority, where the system "
                        "grants it.")},
        {QStringLiteral("log-level"),
         QStringLiteral("Least level of messages on standard error: %1 (default: info).")
             .arg(logLevels().join(QStringLiteral(", "))),
         QStringLiteral("LEVEL"), QStringLiteral("info")},
    };
}

std::vector<QCommandLineOption> subcommandOptions()
{
    return {
        {QStringLiteral("for"),
         QStringLiteral("Keep the bench running for SECONDS: then an order that still runs is stopped, the "
                        "window closes, or the picture is taken."),
         QStringLiteral("SECONDS")},
        {QStringLiteral("count"), QStringLiteral("Stop the order after N events."), QStringLiteral("N")},
        {QStringLiteral("orders"),
         QStringLiteral("Carry out the lines of FILE, as \"shell\" does, beside the window."),
         QStringLiteral("FILE")},
        {QStringLiteral("config-for"),
         QStringLiteral("Write a configuration of the free lines of CHIP (its file, name or label) instead."),
         QStringLiteral("CHIP")},
        {QStringLiteral("watch"),
         QStringLiteral("Go on to tell which chips come and go, and which lines are taken and released.")},
        {QStringLiteral("echo"), QStringLiteral("Write each line before it is carried out.")},
        {QStringLiteral("keep-going"), QStringLiteral("Go on with the next line after a failure.")},
        {QStringLiteral("report"),
         QStringLiteral("Write what became of each \"expect\" to FILE, in JUnit's form."),
         QStringLiteral("FILE.xml")},
        {QStringLiteral("screenshot"), QStringLiteral("Write a picture to FILE and end; needs no display."),
         QStringLiteral("FILE.png")},
        {QStringLiteral("size"), QStringLiteral("Width and height in pixels, 1280x800 for example."),
         QStringLiteral("WxH")},
        {QStringLiteral("scale"),
         QStringLiteral("Scale of all sizes, 2 for 200 %; the screen's own without it."),
         QStringLiteral("FACTOR")},
        {QStringLiteral("theme"), QStringLiteral("Colours: light or dark."), QStringLiteral("THEME")},
        {QStringLiteral("language"), QStringLiteral("Language of the texts: en or fr."),
         QStringLiteral("LANGUAGE")},
    };
}

QString overview(const QCommandLineParser& parser)
{
    QString text = parser.helpText() + QStringLiteral("\nSubcommands:\n");
    for (const SubcommandHelp& help : subcommands()) {
        text += QStringLiteral("  %1 %2\n").arg(help.name, -10).arg(help.summary);
    }
    return text +
           QStringLiteral(
               "\n\"appvantor SUBCOMMAND --help\" tells more. Without a subcommand, the window is shown "
               "when a display is there.\n"
               "Exit status: 0 success, 1 an order failed, 2 wrong usage or configuration, 3 the device "
               "cannot be reached.\n");
}

const SubcommandHelp* find(const QString& name)
{
    const auto found = std::find_if(subcommands().cbegin(), subcommands().cend(),
                                    [&name](const SubcommandHelp& help) { return help.name == name; });
    return found != subcommands().cend() ? &*found : nullptr;
}

ParsedOptions wrongUsage(const QString& text)
{
    return {std::nullopt, text, ExitWrongUsage};
}

/// A parser that knows the global options and those of one subcommand (of all without one).
std::unique_ptr<QCommandLineParser> makeParser(const SubcommandHelp* help)
{
    auto parser = std::make_unique<QCommandLineParser>();
    parser->setApplicationDescription(
        help != nullptr
            ? (QStringLiteral("%1: %2.\n%3").arg(help->name, help->summary, help->details)).trimmed()
            : QStringLiteral("Loads a tool plugin, runs its commands against a device and shows its panel."));
    for (const QCommandLineOption& option : globalOptions()) {
        parser->addOption(option);
    }
    for (const QCommandLineOption& option : subcommandOptions()) {
        if (help == nullptr || help->options.contains(option.names().constFirst())) {
            parser->addOption(option);
        }
    }
    parser->addOption({{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")});
    parser->addPositionalArgument(help != nullptr ? help->name : QStringLiteral("SUBCOMMAND"), QString(),
                                  help != nullptr ? help->name : QString());
    if (help != nullptr && !help->words.isEmpty()) {
        parser->addPositionalArgument(help->words, QString(), help->words);
    }
    return parser;
}

QString readSeconds(const QCommandLineParser& parser, Options* options)
{
    constexpr double longest = 1000000.0;
    bool ok = false;
    const double seconds = parser.value(QStringLiteral("for")).toDouble(&ok);
    if (!ok || !(seconds >= 0.0) || seconds > longest) {
        return QStringLiteral("--for: expected a number of seconds from 0 to 1000000, found \"%1\"")
            .arg(parser.value(QStringLiteral("for")));
    }
    options->seconds = seconds;
    return QString();
}

QString readCount(const QCommandLineParser& parser, Options* options)
{
    bool ok = false;
    const int count = parser.value(QStringLiteral("count")).toInt(&ok);
    if (!ok || count < 1) {
        return QStringLiteral("--count: expected a whole number from 1, found \"%1\"")
            .arg(parser.value(QStringLiteral("count")));
    }
    options->count = count;
    return QString();
}

QString readScale(const QCommandLineParser& parser, Options* options)
{
    constexpr double smallest = 0.5;
    constexpr double largest = 4.0;
    bool ok = false;
    options->scale = parser.value(QStringLiteral("scale")).toDouble(&ok);
    if (!ok || !(options->scale >= smallest && options->scale <= largest)) {
        return QStringLiteral("--scale: expected a number from 0.5 to 4, found \"%1\"")
            .arg(parser.value(QStringLiteral("scale")));
    }
    return QString();
}

QString readSize(const QCommandLineParser& parser, Options* options)
{
    constexpr int largest = 16384;
    const QString text = parser.value(QStringLiteral("size"));
    const QRegularExpressionMatch match =
        QRegularExpression(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$")).match(text);
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    if (!match.hasMatch() || size.isEmpty() || size.width() > largest || size.height() > largest) {
        return QStringLiteral("--size: expected WIDTHxHEIGHT from 1x1 to %1x%1, found \"%2\"")
            .arg(largest)
            .arg(text);
    }
    options->size = size;
    return QString();
}

QString readChoice(const QCommandLineParser& parser, const QString& name, const QStringList& choices,
                   QString* choice)
{
    *choice = parser.value(name);
    if (choices.contains(*choice)) {
        return QString();
    }
    return QStringLiteral("--%1: expected one of %2, found \"%3\"")
        .arg(name, choices.join(QStringLiteral(", ")), *choice);
}

/// Reads the values of the options that were given. Returns what was wrong, or an empty text.
QString readValues(const QCommandLineParser& parser, Options* options)
{
    const QStringList given = parser.optionNames();
    const auto isGiven = [&given](const char* name) { return given.contains(QLatin1String(name)); };
    options->configuration = parser.value(QStringLiteral("config"));
    options->tool = parser.value(QStringLiteral("tool"));
    options->trace = parser.value(QStringLiteral("trace"));
    options->json = isGiven("json");
    options->realtime = isGiven("realtime");
    options->configurationFor =
        isGiven("config-for") ? parser.value(QStringLiteral("config-for")) : QString();
    options->watch = isGiven("watch");
    options->echo = isGiven("echo");
    options->keepGoing = isGiven("keep-going");
    options->report = isGiven("report") ? parser.value(QStringLiteral("report")) : QString();
    options->orders = isGiven("orders") ? parser.value(QStringLiteral("orders")) : QString();
    options->screenshot = isGiven("screenshot") ? parser.value(QStringLiteral("screenshot")) : QString();
    for (const char* name : {"config", "tool", "trace", "orders", "report", "screenshot", "config-for"}) {
        if (isGiven(name) && parser.value(QLatin1String(name)).isEmpty()) {
            return QStringLiteral("--%1: expected a name, found nothing").arg(QLatin1String(name));
        }
    }
    QStringList problems = {readChoice(parser, QStringLiteral("log-level"), logLevels(), &options->logLevel)};
    if (isGiven("for")) {
        problems.append(readSeconds(parser, options));
    }
    if (isGiven("count")) {
        problems.append(readCount(parser, options));
    }
    if (isGiven("size")) {
        problems.append(readSize(parser, options));
    }
    if (isGiven("scale")) {
        problems.append(readScale(parser, options));
    }
    if (isGiven("theme")) {
        problems.append(readChoice(parser, QStringLiteral("theme"),
                                   {QStringLiteral("light"), QStringLiteral("dark")}, &options->theme));
    }
    if (isGiven("language")) {
        problems.append(readChoice(parser, QStringLiteral("language"),
                                   {QStringLiteral("en"), QStringLiteral("fr")}, &options->language));
    }
    problems.removeAll(QString());
    return problems.join(QLatin1Char('\n'));
}

} // namespace

ParsedOptions parseOptions(const QStringList& arguments)
{
    const auto anyParser = makeParser(nullptr);
    const bool understood = anyParser->parse(arguments);
    const QString name = anyParser->positionalArguments().value(0);
    const SubcommandHelp* help = find(name);
    if (help == nullptr && !name.isEmpty()) {
        QStringList names;
        for (const SubcommandHelp& known : subcommands()) {
            names.append(known.name);
        }
        return wrongUsage(QStringLiteral("unknown subcommand \"%1\"; expected one of: %2")
                              .arg(name, names.join(QStringLiteral(", "))));
    }
    if (anyParser->isSet(QStringLiteral("help"))) {
        return {std::nullopt, help != nullptr ? makeParser(help)->helpText() : overview(*anyParser),
                ExitSuccess};
    }
    if (!understood) {
        return wrongUsage(anyParser->errorText());
    }
    const auto parser = makeParser(help != nullptr ? help : find(QStringLiteral("window")));
    if (!parser->parse(arguments)) {
        return wrongUsage(QStringLiteral("%1: %2").arg(help != nullptr ? name : QStringLiteral("window"),
                                                       parser->errorText()));
    }
    Options options;
    options.subcommand = help != nullptr ? help->subcommand : Subcommand::Window;
    options.words = parser->positionalArguments().mid(1);
    if (help != nullptr && help->words.isEmpty() && !options.words.isEmpty()) {
        return wrongUsage(QStringLiteral("%1: unexpected \"%2\"").arg(name, options.words.first()));
    }
    if (options.subcommand == Subcommand::Run && options.words.isEmpty()) {
        return wrongUsage(
            QStringLiteral("run: expected COMMAND [NAME=VALUE …]; \"appvantor commands\" lists them"));
    }
    const QString problem = readValues(*parser, &options);
    return problem.isEmpty() ? ParsedOptions{options, QString(), ExitSuccess} : wrongUsage(problem);
}
