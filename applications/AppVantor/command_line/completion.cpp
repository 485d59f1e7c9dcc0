#include "completion.h"

#include "channel_names.h"

#include <configuration/channel_orders.h>
#include <plugin_management/d_tool.h>

#include <algorithm>

namespace {

QStringList levels()
{
    return {QStringLiteral("ON"), QStringLiteral("OFF")};
}

/// What a parameter is usually given.
QStringList usualValues(const QString& parameter, const ChannelNames& names)
{
    return parameter == QLatin1String("channel") ? names.all() : knownWords(parameter);
}

/// NAME= of each name, and once that is there, NAME=VALUE.
QStringList assignments(const QString& word, const QString& name, const QStringList& values)
{
    const QString prefix = name + QLatin1Char('=');
    if (!word.startsWith(prefix)) {
        return {prefix};
    }
    QStringList candidates;
    for (const QString& value : values) {
        candidates.append(prefix + value);
    }
    return candidates;
}

QStringList settings(const QString& word, const ChannelNames& names)
{
    QStringList candidates;
    const QStringList channels = names.all();
    for (const QString& channel : channels) {
        candidates += assignments(word, channel, levels());
    }
    return candidates;
}

QStringList parameters(const DCommandDescription& command, const QString& word, const ChannelNames& names)
{
    QStringList candidates;
    for (const DDeclaration& parameter : command.parameters) {
        candidates += assignments(word, parameter.name, usualValues(parameter.name, names));
    }
    return candidates;
}

/// What may follow a word of the shell.
QStringList argumentsOf(const QStringList& before, const QString& word, const ChannelNames& names)
{
    if (before.first() == QLatin1String("expect")) {
        return before.size() == 1   ? settings(word, names)
               : before.size() == 2 ? QStringList{QStringLiteral("within")}
                                    : QStringList();
    }
    if (before.first() == QLatin1String("set")) {
        return settings(word, names);
    }
    if (before.first() == QLatin1String("get")) {
        return names.all();
    }
    if (before.first() == QLatin1String("let")) {
        const int equals = word.indexOf(QLatin1Char('='));
        return before.last() == QLatin1String("=") ? names.all()
               : equals > 0                        ? assignments(word, word.left(equals), names.all())
                                                   : QStringList();
    }
    return {};
}

} // namespace

QStringList completionsOf(const QStringList& before, const QString& word, const QStringList& shellWords,
                          const DTool& tool, const ChannelNames& names)
{
    QStringList candidates = before.isEmpty() ? shellWords : argumentsOf(before, word, names);
    const QVector<DCommandDescription> commands = tool.orderables();
    for (const DCommandDescription& command : commands) {
        if (before.isEmpty()) {
            candidates.append(command.name);
        } else if (command.name == before.first()) {
            candidates += parameters(command, word, names);
        }
    }
    QStringList matching;
    std::copy_if(candidates.cbegin(), candidates.cend(), std::back_inserter(matching),
                 [&word](const QString& candidate) { return candidate.startsWith(word); });
    return matching;
}
