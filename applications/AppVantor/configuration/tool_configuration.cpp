#include "tool_configuration.h"

#include "installation.h"

#include <QDir>
#include <QHash>
#include <QSet>
#include <QUuid>

namespace {

/// The lines that channels can be linked to.
struct Lines
{
    bool known = false; ///< else nothing can be said about them
    QHash<QString, DLine::Direction> directions;
    LineKinds kinds = LineKinds::Any;
};

QString pluginFile(const QString& plugin, const QString& folder)
{
    if (plugin.contains(QLatin1Char('/')) || plugin.endsWith(QLatin1String(".so"))) {
        return QDir::cleanPath(QDir(folder).absoluteFilePath(plugin));
    }
    return QStringLiteral("%1/lib%2.so").arg(pluginFolder(), plugin);
}

/// The sub-entries of a channel that the bench knows; a plugin may have others.
struct ChannelItems
{
    QString type;
    QString direction;
    QString link;
};

ChannelItems readItems(const ConfigObject& channel)
{
    const QString id = QStringLiteral("id");
    const QString value = QStringLiteral("value");
    ChannelItems items;
    QSet<QString> names;
    for (const ConfigObject& item : channel.objects(value)) {
        item.allowOnly({id, value});
        const QString name = item.text(id);
        if (!name.isEmpty() && names.contains(name)) {
            item.addProblem(id, wording(R"(expected "%1" once)").arg(name));
        }
        names.insert(name);
        if (name == QLatin1String("type")) {
            const QStringList types = {QStringLiteral("analogInput"), QStringLiteral("analogOutput"),
                                       QStringLiteral("digitalInput"), QStringLiteral("digitalOutput")};
            items.type = types.value(item.choice(value, types));
        } else if (name == QLatin1String("direction")) {
            const QStringList directions = {QStringLiteral("in"), QStringLiteral("out")};
            items.direction = directions.value(item.choice(value, directions));
        } else if (name == QLatin1String("link")) {
            items.link = item.text(value);
        }
    }
    return items;
}

/// The equipment's inputs are what the bench drives, its outputs what the bench reads.
void checkDirection(const ConfigObject& channel, const QString& id, const ChannelItems& items)
{
    if (items.type.isEmpty() || items.direction.isEmpty()) {
        return;
    }
    const QString expected =
        items.type.endsWith(QLatin1String("Input")) ? QStringLiteral("out") : QStringLiteral("in");
    if (items.direction != expected) {
        channel.addProblem(QStringLiteral("value"),
                           wording(R"(channel "%1": expected the "direction" "%2" of a channel of the )"
                                   R"(type "%3", found "%4")")
                               .arg(id, expected, items.type, items.direction));
    }
}

void checkLink(const ConfigObject& channel, const QString& id, const ChannelItems& items, const Lines& lines)
{
    const QString value = QStringLiteral("value");
    const auto line = lines.directions.constFind(items.link);
    if (!lines.known || items.link.isEmpty()) {
        return;
    }
    if (line == lines.directions.constEnd()) {
        channel.addProblem(value, wording(R"(channel "%1": expected "link" to name a line of the device, )"
                                          R"(found "%2")")
                                      .arg(id, items.link));
    } else if (items.direction == QLatin1String("out") && *line == DLine::Direction::In) {
        channel.addProblem(value, wording(R"(channel "%1": "direction" is "out", expected "link" to )"
                                          R"(name an output line, "%2" is an input)")
                                      .arg(id, items.link));
    } else if (lines.kinds == LineKinds::DigitalOnly && items.type.startsWith(QLatin1String("analog"))) {
        channel.addProblem(value, wording(R"(channel "%1": "type" is "%2", but "%3" is a line of a GPIO )"
                                          R"(chip and digital, expected "digitalInput" or "digitalOutput")")
                                      .arg(id, items.type, items.link));
    }
}

void readChannel(const ConfigObject& channel, const QString& id, const Lines& lines)
{
    const QString visibility = QStringLiteral("visibility");
    channel.allowOnly({QStringLiteral("id"), QStringLiteral("name"), visibility, QStringLiteral("value")});
    channel.textOr(QStringLiteral("name"), id);
    channel.choiceOr(visibility,
                     {QStringLiteral("public"), QStringLiteral("private"), QStringLiteral("hidden")}, 0);
    const ChannelItems items = readItems(channel);
    checkDirection(channel, id, items);
    checkLink(channel, id, items, lines);
}

void readChannels(const ConfigObject& tool, const Lines& lines)
{
    const QString key = QStringLiteral("id");
    QSet<QString> ids;
    for (const ConfigObject& channel : tool.objects(QStringLiteral("channels"))) {
        const QString id = channel.text(key);
        if (!id.isEmpty() && ids.contains(id)) {
            channel.addProblem(key, wording(R"(expected an identifier of its own, "%1" is taken)").arg(id));
        }
        ids.insert(id);
        readChannel(channel, id, lines);
    }
}

} // namespace

QVector<BenchConfiguration::Tool> readTools(const ConfigObject& root,
                                            const std::optional<QVector<DLine>>& lines, LineKinds kinds,
                                            const QString& folder)
{
    const QString id = QStringLiteral("id");
    const QString name = QStringLiteral("name");
    const QString plugin = QStringLiteral("plugin");
    Lines known;
    known.known = lines.has_value();
    known.kinds = kinds;
    if (lines) {
        for (const DLine& line : *lines) {
            known.directions.insert(line.name, line.direction);
        }
    }
    QVector<BenchConfiguration::Tool> tools;
    QSet<QString> names;
    QSet<QUuid> ids;
    for (const ConfigObject& entry : root.objects(QStringLiteral("tools"))) {
        entry.allowOnly({name, id, plugin, QStringLiteral("channels")});
        const QString toolName = entry.text(name);
        if (!toolName.isEmpty() && names.contains(toolName)) {
            entry.addProblem(name, wording(R"(expected a name of its own, "%1" is taken)").arg(toolName));
        }
        names.insert(toolName);
        const QString idText = entry.text(id);
        const QUuid toolId(idText);
        if (!idText.isEmpty() && toolId.isNull()) {
            entry.addProblem(id, wording(R"(expected a uuid in braces, found "%1")").arg(idText));
        } else if (!idText.isEmpty() && ids.contains(toolId)) {
            entry.addProblem(id, wording(R"(expected an identifier of its own, "%1" is taken)").arg(idText));
        }
        ids.insert(toolId);
        readChannels(entry, known);
        tools.append({entry.toVariantMap(), pluginFile(entry.text(plugin), folder)});
    }
    if (tools.isEmpty()) {
        root.addProblem(QStringLiteral("tools"), wording("expected at least one tool"));
    }
    return tools;
}
