#include "home_announcement.h"

#include <configuration/bench.h>
#include <devices/rig_topics.h>
#include <process/json_line.h>

#include <QCoreApplication>
#include <QUrl>

namespace {

/// A name of letters, digits, "-" and "_" only, another one for each name.
QString identifier(const QString& name)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(name, {}, "_.~").replace('%', '_'));
}

/// What a person calls a line: the name of its first channel, or its own.
QString nameOf(const DLine& line, const Bench& bench)
{
    for (const auto& tool : bench.tools()) {
        for (const DToolChannel& channel : tool->channels()) {
            if (channel.link == line.name) {
                return channel.name.isEmpty() ? channel.id : channel.name;
            }
        }
    }
    return line.name;
}

Json componentOf(const DLine& line, const RigTopics& topics, bool canBeSet)
{
    const bool isAnalog = line.kind == DLine::Kind::Analog;
    Json json = {{"p", isAnalog ? (canBeSet ? "number" : "sensor") : (canBeSet ? "switch" : "binary_sensor")},
                 {"stat_t", topics.line(line.name).toStdString()},
                 {"val_tpl", "{{ value_json.v }}"}};
    if (canBeSet) {
        json["cmd_t"] = topics.lineSet(line.name).toStdString();
    }
    if (!isAnalog) {
        json.update({{"pl_on", "1"}, {"pl_off", "0"}});
    } else if (canBeSet) {
        json.update({{"min", 0}, {"max", line.highestLevel()}, {"step", 1}, {"mode", "box"}});
    } else {
        json["stat_cla"] = "measurement";
    }
    return json;
}

} // namespace

BrokerMessage homeAnnouncement(const Bench& bench, const QString& rig, bool takesOrders)
{
    const RigTopics topics(rig);
    const QString id = identifier(rig);
    const QString device = QStringLiteral("appvantor_") + id;
    const Json version = toJson(QCoreApplication::applicationVersion());
    Json components = Json::object();
    for (const DLine& line : bench.device().lines()) {
        const QString key = identifier(line.name);
        Json component = componentOf(line, topics, takesOrders && line.direction == DLine::Direction::Out);
        component["name"] = toJson(nameOf(line, bench));
        component["unique_id"] = toJson(device + QLatin1Char('_') + key);
        components[key.toStdString()] = component;
    }
    const Json announcement = {
        {"dev", {{"ids", {toJson(device)}}, {"name", toJson(rig)}, {"mdl", "appvantor"}, {"sw", version}}},
        {"o", {{"name", "appvantor"}, {"sw", version}}},
        {"avty_t", topics.state().toStdString()},
        {"avty_tpl", "{{ 'online' if value_json.state == 'online' else 'offline' }}"},
        {"qos", 1},
        {"cmps", components}};
    return {"homeassistant/device/" + id.toLatin1() + "/config",
            QByteArray::fromStdString(lineOf(announcement)), true};
}
