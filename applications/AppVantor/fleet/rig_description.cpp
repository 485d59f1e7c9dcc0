#include "rig_description.h"

#include <configuration/bench.h>

#include <QCoreApplication>
#include <QFileInfo>

namespace {

Json toJson(const QVector<DLine>& lines)
{
    Json list = Json::array();
    for (const DLine& line : lines) {
        list.push_back({{"index", list.size()},
                        {"name", toJson(line.name)},
                        {"kind", line.kind == DLine::Kind::Analog ? "analog" : "digital"},
                        {"direction", line.direction == DLine::Direction::In ? "in" : "out"}});
    }
    return list;
}

/// What a plugin is called everywhere, wherever its file is here.
QString pluginName(const QString& configured)
{
    const QString name = QFileInfo(configured).completeBaseName();
    return name.startsWith(QLatin1String("lib")) && configured.endsWith(QLatin1String(".so")) ? name.mid(3)
                                                                                              : configured;
}

Json toJson(const DTool& tool, const RigForms& forms)
{
    QVariantMap entry = tool.toolConfiguration;
    const QString plugin = QStringLiteral("plugin");
    entry.insert(plugin, pluginName(entry.value(plugin).toString()));
    Json json = toJson(QVariant(entry));
    json["commands"] = Json::array();
    const QVector<DCommandDescription> commands = tool.commands();
    for (const DCommandDescription& command : commands) {
        json["commands"].push_back(forms.command(tool, command));
    }
    return json;
}

} // namespace

QByteArray describeRig(const Bench& bench, const RigForms& forms)
{
    Json tools = Json::array();
    for (const auto& tool : bench.tools()) {
        tools.push_back(toJson(*tool, forms));
    }
    const Json json = {{"version", toJson(QCoreApplication::applicationVersion())},
                       {"clock", "steady"},
                       {"lines", toJson(bench.device().lines())},
                       {"tools", tools}};
    return QByteArray::fromStdString(lineOf(json));
}
