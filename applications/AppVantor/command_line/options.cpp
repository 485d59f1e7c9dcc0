#include "options.h"

#include "option_table.h"

#include <process/did_you_mean.h>
#include <process/exit_status.h>

#include <QCommandLineParser>

#include <algorithm>

namespace {

void addTo(QCommandLineParser* parser, const OptionRow& row)
{
    parser->addOption(QCommandLineOption(row.name, row.help, row.value));
}

QString versionName()
{
    return QStringLiteral("version");
}

void addHelpTo(QCommandLineParser* parser)
{
    parser->addOption({{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")});
}

/// The table of the global options, and those of a subcommand where there is one.
QString optionsHelp(const std::vector<OptionRow>& options, const SubcommandRow* subcommand)
{
    QCommandLineParser parser;
    for (const OptionRow& option : options) {
        if (subcommand != nullptr ? takesOption(*subcommand, option) : option.isGlobal) {
            addTo(&parser, option);
        }
    }
    addHelpTo(&parser);
    if (subcommand == nullptr) {
        parser.addOption({versionName(), QStringLiteral("Tell the version.")});
    }
    const QString help = parser.helpText(); // its first line calls the program by its whole path
    return help.mid(help.indexOf(QLatin1Char('\n')) + 1);
}

QString overview(const std::vector<OptionRow>& options)
{
    QString text = QStringLiteral("Usage: appvantor [options] SUBCOMMAND\n"
                                  "Loads a tool plugin, runs its commands against a device and shows its "
                                  "panel.\n") +
                   optionsHelp(options, nullptr) + QStringLiteral("\nSubcommands:\n");
    for (const SubcommandRow& row : subcommandRows()) {
        text += QStringLiteral("  %1 %2\n").arg(row.name, -10).arg(row.summary);
    }
    return text +
           QStringLiteral(
               "\n\"appvantor SUBCOMMAND --help\" tells more. Without a subcommand, the window is shown "
               "when a display is there.\n"
               "Exit status: 0 success, 1 an order failed, 2 wrong usage or configuration, 3 the device "
               "cannot be reached, 4 another bench serves the rig.\n");
}

QString helpOf(const SubcommandRow& subcommand, const std::vector<OptionRow>& options)
{
    const QString usage =
        QStringLiteral("Usage: appvantor %1 [options] %2").arg(subcommand.name, subcommand.words);
    const QString details = subcommand.details.isEmpty() ? QString() : subcommand.details + QLatin1Char('\n');
    return QStringLiteral("%1\n%2: %3.\n%4%5")
        .arg(usage.trimmed(), subcommand.name, subcommand.summary, details,
             optionsHelp(options, &subcommand));
}

ParsedOptions wrongUsage(const QString& text)
{
    return {std::nullopt, text, ExitWrongUsage};
}

QString unknownOption(const QString& name, const std::vector<OptionRow>& options)
{
    const QString written = (name.size() > 1 ? QStringLiteral("--") : QStringLiteral("-")) + name;
    QStringList known;
    for (const OptionRow& option : options) {
        known.append(QStringLiteral("--") + option.name);
    }
    return QStringLiteral("unknown option \"%1\"").arg(written) + didYouMean(written, known).english();
}

QString unknownSubcommand(const QString& name)
{
    QStringList known;
    for (const SubcommandRow& row : subcommandRows()) {
        known.append(row.name);
    }
    const QString meant = didYouMean(name, known).english();
    return QStringLiteral("unknown subcommand \"%1\"").arg(name) +
           (meant.isEmpty() ? QStringLiteral("; expected one of: ") + known.join(QStringLiteral(", "))
                            : meant);
}

/// What is wrong where every option is known: one at the end lacks its value, or one has a value too many.
QString misplacedValue(const QStringList& arguments, const std::vector<OptionRow>& options)
{
    for (const OptionRow& option : options) {
        const QString written = QStringLiteral("--") + option.name;
        if (!option.value.isEmpty() && arguments.last() == written) {
            return QStringLiteral("%1: expected %2, found nothing").arg(written, option.value);
        }
    }
    const auto wrong = std::find_if(arguments.cbegin(), arguments.cend(), [](const QString& argument) {
        return argument.startsWith(QLatin1Char('-')) && argument.contains(QLatin1Char('='));
    });
    return wrong != arguments.cend() ? QStringLiteral("%1: expected no value").arg(*wrong) : QString();
}

/// Takes the values of the options that were given. Returns what was wrong, or an empty text.
QString takeValues(const QCommandLineParser& parser, const SubcommandRow& subcommand,
                   const std::vector<OptionRow>& options)
{
    QStringList problems;
    for (const OptionRow& option : options) {
        if (!parser.isSet(option.name)) {
            continue;
        }
        if (!takesOption(subcommand, option)) {
            problems.append(
                QStringLiteral("%1 takes no option \"--%2\"; \"appvantor %1 --help\" lists its own")
                    .arg(subcommand.name, option.name));
            continue;
        }
        const QString value = option.value.isEmpty() ? QString() : parser.value(option.name);
        const QString expected = option.take(value);
        if (!expected.isEmpty()) {
            problems.append(
                QStringLiteral("--%1: expected %2, found %3")
                    .arg(option.name, expected,
                         value.isEmpty() ? QStringLiteral("nothing") : QStringLiteral("\"%1\"").arg(value)));
        }
    }
    return problems.join(QLatin1Char('\n'));
}

/// What is wrong with the words behind the name of subcommand, or an empty text.
QString checkWords(const SubcommandRow& subcommand, const QStringList& words)
{
    if (subcommand.words.isEmpty() && !words.isEmpty()) {
        return QStringLiteral("%1: unexpected \"%2\"").arg(subcommand.name, words.first());
    }
    const bool needsWords = !subcommand.words.isEmpty() && !subcommand.words.startsWith(QLatin1Char('['));
    return needsWords && words.isEmpty()
               ? QStringLiteral("%1: expected %2; \"appvantor %1 --help\" tells more")
                     .arg(subcommand.name, subcommand.words)
               : QString();
}

} // namespace

ParsedOptions parseOptions(const QStringList& arguments)
{
    Options options;
    const std::vector<OptionRow> rows = optionRows(&options);
    QCommandLineParser parser;
    for (const OptionRow& row : rows) {
        addTo(&parser, row);
    }
    addHelpTo(&parser);
    parser.addOption({versionName(), QString()});
    const bool understood = parser.parse(arguments);
    if (!parser.unknownOptionNames().isEmpty()) {
        return wrongUsage(unknownOption(parser.unknownOptionNames().constFirst(), rows));
    }
    const QString name = parser.positionalArguments().value(0, QStringLiteral("window"));
    const auto subcommand = std::find_if(subcommandRows().cbegin(), subcommandRows().cend(),
                                         [&name](const SubcommandRow& row) { return row.name == name; });
    if (subcommand == subcommandRows().cend()) {
        return wrongUsage(unknownSubcommand(name));
    }
    if (parser.isSet(QStringLiteral("help"))) {
        const bool ofAll = parser.positionalArguments().isEmpty();
        return {std::nullopt, ofAll ? overview(rows) : helpOf(*subcommand, rows), ExitSuccess};
    }
    if (parser.isSet(versionName())) {
        return {std::nullopt, QStringLiteral("appvantor ") + QCoreApplication::applicationVersion(),
                ExitSuccess};
    }
    options.subcommand = subcommand->subcommand;
    options.words = parser.positionalArguments().mid(1);
    const QString problem =
        !understood ? misplacedValue(arguments, rows) : takeValues(parser, *subcommand, rows);
    const QString wrong = problem.isEmpty() ? checkWords(*subcommand, options.words) : problem;
    return wrong.isEmpty() ? ParsedOptions{options, QString(), ExitSuccess} : wrongUsage(wrong);
}
