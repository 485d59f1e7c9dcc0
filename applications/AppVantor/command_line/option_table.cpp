#include "option_table.h"

#include <process/message_log.h>

#include <QRegularExpression>

namespace {

using Taker = OptionRow::Taker;

Taker flag(bool* given)
{
    return [given](const QString&) {
        *given = true;
        return QString();
    };
}

Taker text(QString* taken)
{
    return [taken](const QString& value) {
        *taken = value;
        return value.isEmpty() ? QStringLiteral("a name") : QString();
    };
}

Taker picture(QString* taken)
{
    return [taken](const QString& value) {
        *taken = value;
        return value == QLatin1String("-") || value.endsWith(QLatin1String(".png"), Qt::CaseInsensitive)
                   ? QString()
                   : QStringLiteral("a file that ends with .png, or \"-\" for standard output");
    };
}

Taker choice(QString* taken, const QStringList& choices)
{
    const auto take = [taken, choices](const QString& value) {
        *taken = value;
        return choices.contains(value) ? QString()
                                       : QStringLiteral("one of %1").arg(choices.join(QStringLiteral(", ")));
    };
    return {take, choices};
}

Taker seconds(std::optional<double>* taken)
{
    return [taken](const QString& value) {
        constexpr double longest = 1000000.0;
        bool ok = false;
        *taken = value.toDouble(&ok);
        const bool fits = ok && **taken >= 0.0 && **taken <= longest;
        return fits ? QString() : QStringLiteral("a number of seconds from 0 to 1000000");
    };
}

Taker count(std::optional<int>* taken)
{
    return [taken](const QString& value) {
        bool ok = false;
        *taken = value.toInt(&ok);
        return ok && **taken >= 1 ? QString() : QStringLiteral("a whole number from 1");
    };
}

Taker scale(double* taken)
{
    return [taken](const QString& value) {
        constexpr double smallest = 0.5;
        constexpr double largest = 4.0;
        bool ok = false;
        *taken = value.toDouble(&ok);
        const bool fits = ok && *taken >= smallest && *taken <= largest;
        return fits ? QString() : QStringLiteral("a number from 0.5 to 4");
    };
}

Taker size(QSize* taken)
{
    return [taken](const QString& value) {
        constexpr int largest = 16384;
        const QRegularExpressionMatch match =
            QRegularExpression(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$")).match(value);
        *taken = QSize(match.captured(1).toInt(), match.captured(2).toInt());
        const bool fits =
            match.hasMatch() && !taken->isEmpty() && taken->width() <= largest && taken->height() <= largest;
        return fits ? QString() : QStringLiteral("WIDTHxHEIGHT from 1x1 to %1x%1").arg(largest);
    };
}

} // namespace

const std::vector<SubcommandRow>& subcommandRows()
{
    static const std::vector<SubcommandRow> rows = {
        {Options::Subcommand::Window, "window", "",
         "the bench window: tools, maintenance page, board, orders", "",
         "orders serve read-only home-assistant screenshot size scale theme language for off-at-end"},
        {Options::Subcommand::Commands, "commands", "", "the commands that the tool's plugin declares", "",
         ""},
        {Options::Subcommand::Channels, "channels", "", "the tool's channels and their present values", "",
         ""},
        {Options::Subcommand::Get, "get", "CHANNEL…", "the levels of channels, as \"set\" takes them",
         "\"appvantor channels\" lists the channels.", ""},
        {Options::Subcommand::Set, "set", "CHANNEL=VALUE…", "sets channels, all at once",
         "A VALUE is ON, OFF, PULSE:MS, BLINK:MS:PERCENT, or the number of an analogue channel.\n"
         "Without --for, all ends when it is set and every pulse is over: what blinks, too.",
         "for off-at-end"},
        {Options::Subcommand::Off, "off", "", "switches off everything that the tools drive",
         "With --tool, what that one drives.", ""},
        {Options::Subcommand::Watch, "watch", "CHANNEL…",
         "the changes of channels, until Ctrl-C, --count or --timeout",
         "\"appvantor channels\" lists the channels.", "edge count timeout"},
        {Options::Subcommand::Run, "run", "COMMAND [NAME=VALUE …]",
         "one order; a listening one until Ctrl-C, --for or --count",
         "\"appvantor commands\" lists the commands. A VALUE that begins with [, { or \" is read as\n"
         "JSON, any other is a text that is converted to the parameter's type.",
         "for count off-at-end"},
        {Options::Subcommand::Shell, "shell", "[FILE …]",
         "orders from files or standard input, one a line; \"help\" lists what it knows", "",
         "echo keep-going report serve read-only home-assistant off-at-end"},
        {Options::Subcommand::Serve, "serve", "", "puts the bench on an MQTT broker, until Ctrl-C",
         "The rig is called as --rig says, or the path of --broker, or this machine.",
         "read-only home-assistant off-at-end"},
        {Options::Subcommand::Rigs, "rigs", "", "the benches on an MQTT broker, and who holds them", "",
         "watch"},
        {Options::Subcommand::Lease, "lease", "RIG", "keeps the rig for oneself, until Ctrl-C or --for",
         "Here --for counts minutes (10 without it). Orders of others are refused meanwhile.", "for"},
        {Options::Subcommand::Release, "release", "RIG", "gives a rig back", "", ""},
        {Options::Subcommand::Discover, "discover", "", "the GPIO chips of this machine and their lines", "",
         "config-for watch for"},
        {Options::Subcommand::Panel, "panel", "", "the plugin's maintenance page alone", "",
         "screenshot size scale theme language for off-at-end"},
        {Options::Subcommand::Complete, "complete", "[-- WORD …]",
         "what the last WORD of a command line may be completed to, for shells", "", ""},
        {Options::Subcommand::About, "about", "", "version, Qt, and the plugins that are found", "", ""},
    };
    return rows;
}

std::vector<OptionRow> optionRows(Options* options)
{
    return {
        {"config", "FILE", "Read the bench from FILE instead of the built-in example.",
         text(&options->configuration), true},
        {"tool", "NAME", "Work with the tool NAME instead of the first one.", text(&options->tool), true},
        {"json", "", "Write one JSON object a line, and nothing else, to standard output.",
         flag(&options->json), true},
        {"trace", "FILE.vcd", "Record every level change in FILE, a Value Change Dump.",
         text(&options->trace), true},
        {"realtime", "",
         "Give the device a thread of its own with a real-time priority, where the system "
         "grants it.",
         flag(&options->realtime), true},
        {"log-level", "LEVEL",
         "Least level of messages on standard error: debug, info (without it), warning, critical, off.",
         choice(&options->logLevel, logLevels()), true},
        {"broker", "URL",
         "Address of an MQTT broker, mqtt://HOST[:PORT]/[RIG] or mqtts://… (without it: the variable "
         "APPVANTOR_BROKER).",
         text(&options->broker), true},
        {"rig", "NAME",
         "Work on the rig NAME of the broker, without a configuration; of serve: its own name.",
         text(&options->rig), true},
        {"login", "FILE",
         "File whose first line is USER:PASSWORD for the broker (without it: the variables APPVANTOR_USER "
         "and APPVANTOR_PASSWORD).",
         text(&options->login), true},
        {"ca", "FILE", "Certificates that the broker's must come from (default: the system's).",
         text(&options->authorities), true},
        {"cert", "FILE", "Certificate that is shown to the broker.", text(&options->certificate), true},
        {"key", "FILE", "Key of that certificate.", text(&options->key), true},
        {"for", "SECONDS",
         "Keep the bench running for SECONDS (lease: minutes): then an order that still runs is stopped, the "
         "window closes, or the picture is taken.",
         seconds(&options->seconds)},
        {"count", "N", "End after N changes, or events; with an edge, only those count in which it was seen.",
         count(&options->count)},
        {"edge", "EDGE", "What changes to tell: rising, falling or both (default: both).",
         choice(&options->edge,
                {QStringLiteral("rising"), QStringLiteral("falling"), QStringLiteral("both")})},
        {"timeout", "SECONDS", "End after SECONDS at the latest, with status 1.", seconds(&options->timeout)},
        {"off-at-end", "", "Switch off everything that the tools drive at the end, however it comes.",
         flag(&options->offAtEnd)},
        {"orders", "FILE", "Carry out the lines of FILE, as \"shell\" does, beside the window.",
         text(&options->orders)},
        {"serve", "URL", "Put the bench on the broker URL beside, as \"serve\" does.", text(&options->serve)},
        {"read-only", "", "Take no orders from the broker.", flag(&options->readOnly)},
        {"home-assistant", "", "Announce the rig to Home Assistant, by its MQTT discovery.",
         flag(&options->homeAssistant)},
        {"config-for", "CHIP",
         "Write a configuration of the free lines of CHIP (its file, name or label) instead.",
         text(&options->configurationFor)},
        {"watch", "", "Go on to tell what changes.", flag(&options->watch)},
        {"echo", "", "Write each line before it is carried out.", flag(&options->echo)},
        {"keep-going", "", "Go on with the next line after a failure.", flag(&options->keepGoing)},
        {"report", "FILE.xml", "Write what became of each \"expect\" to FILE, in JUnit's form.",
         text(&options->report)},
        {"screenshot", "FILE.png",
         "Write a picture to FILE (\"-\": standard output) and end; needs no display.",
         picture(&options->screenshot)},
        {"size", "WxH", "Width and height in pixels, 1280x800 for example.", size(&options->size)},
        {"scale", "FACTOR", "Scale of all sizes, 2 for 200 %; the screen's own without it.",
         scale(&options->scale)},
        {"theme", "THEME", "Colours: light or dark.",
         choice(&options->theme, {QStringLiteral("light"), QStringLiteral("dark")})},
        {"language", "LANGUAGE", "Language of the texts: en or fr.",
         choice(&options->language, {QStringLiteral("en"), QStringLiteral("fr")})},
    };
}

bool takesOption(const SubcommandRow& subcommand, const OptionRow& option)
{
    return option.isGlobal || subcommand.options.split(QLatin1Char(' ')).contains(option.name);
}
