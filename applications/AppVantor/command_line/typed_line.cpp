#include "typed_line.h"

#include "channel_names.h"
#include "completion.h"

#include <configuration/bench.h>

#include <QFileInfo>

#include <algorithm>

namespace {

const SubcommandRow* findSubcommand(const QString& name)
{
    const auto& rows = subcommandRows();
    const auto found = std::find_if(rows.cbegin(), rows.cend(),
                                    [&name](const SubcommandRow& row) { return row.name == name; });
    return found != rows.cend() ? &*found : nullptr;
}

bool isOption(const QString& word)
{
    return word.startsWith(QLatin1Char('-'));
}

} // namespace

TypedLine::TypedLine(const QStringList& words)
    : m_options(optionRows(&m_given))
    , m_word(words.value(words.size() - 1))
{
    for (int i = 0; i < words.size() - 1; ++i) {
        take(words.at(i));
    }
    const int assignment = m_word.indexOf(QLatin1Char('='));
    if (m_expectsValue == nullptr && isOption(m_word) && assignment > 0) {
        m_expectsValue = findOption(m_word.left(assignment));
        m_prefix = m_word.left(assignment + 1);
    }
}

void TypedLine::take(const QString& word)
{
    if (m_expectsValue != nullptr) {
        m_expectsValue->take(word);
        m_expectsValue = nullptr;
    } else if (isOption(word)) {
        const OptionRow* option = findOption(word.section(QLatin1Char('='), 0, 0));
        if (option != nullptr && word.contains(QLatin1Char('='))) {
            option->take(word.section(QLatin1Char('='), 1));
        } else if (option != nullptr && !option->value.isEmpty()) {
            m_expectsValue = option;
        }
    } else if (m_subcommand == nullptr) {
        m_subcommand = findSubcommand(word);
    } else {
        m_arguments.append(word);
    }
}

const OptionRow* TypedLine::findOption(const QString& written) const
{
    const auto found = std::find_if(m_options.cbegin(), m_options.cend(), [&written](const OptionRow& row) {
        return written == QStringLiteral("--") + row.name;
    });
    return found != m_options.cend() ? &*found : nullptr;
}

bool TypedLine::needsBench() const
{
    const QString& file = m_given.configuration;
    if (!file.isEmpty() && !QFileInfo(file).isFile()) {
        return false; // a pipe is not read twice
    }
    return m_expectsValue != nullptr ? m_expectsValue->name == QLatin1String("tool")
                                     : m_subcommand != nullptr && !isOption(m_word);
}

QStringList TypedLine::optionNames() const
{
    QStringList names = {QStringLiteral("--help")};
    for (const OptionRow& option : m_options) {
        if (m_subcommand != nullptr ? takesOption(*m_subcommand, option) : option.isGlobal) {
            names.append(QStringLiteral("--") + option.name);
        }
    }
    return names;
}

QStringList TypedLine::argumentsOf(const DTool& tool) const
{
    const ChannelNames names(tool);
    switch (m_subcommand->subcommand) {
    case Options::Subcommand::Get:
    case Options::Subcommand::Watch:
        return names.all();
    case Options::Subcommand::Set:
        return completionsOf({QStringLiteral("set")}, m_word, {}, tool, names);
    case Options::Subcommand::Run:
        return completionsOf(m_arguments, m_word, {}, tool, names);
    default:
        return {};
    }
}

QStringList TypedLine::completions(const Bench* bench) const
{
    QStringList candidates;
    if (m_expectsValue != nullptr) {
        candidates = m_expectsValue->take.values;
        if (bench != nullptr) {
            for (const auto& tool : bench->tools()) {
                candidates.append(tool->objectName());
            }
        }
    } else if (isOption(m_word)) {
        candidates = optionNames();
    } else if (m_subcommand == nullptr) {
        for (const SubcommandRow& row : subcommandRows()) {
            candidates.append(row.name);
        }
    } else if (bench != nullptr) {
        if (const DTool* tool = bench->findTool(m_given.tool)) {
            candidates = argumentsOf(*tool);
        }
    }
    QStringList matching;
    for (const QString& candidate : qAsConst(candidates)) {
        if ((m_prefix + candidate).startsWith(m_word)) {
            matching.append(m_prefix + candidate);
        }
    }
    return matching;
}
