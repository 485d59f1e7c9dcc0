#include "list_channels.h"

#include "channel_value.h"
#include "order_run.h"
#include "table.h"

#include <configuration/value_text.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>
#include <process/diagnostics.h>
#include <process/failure_status.h>

#include <algorithm>
#include <iterator>
#include <vector>

namespace {

struct ChannelRow
{
    const DToolChannel& channel;
    const DOrder* reading; ///< null for a channel that is linked to nothing

    QString item(const char* id) const { return channel.items.value(QLatin1String(id)).toString(); }
};

QVector<DToolChannel> linkedOf(const QVector<DToolChannel>& channels)
{
    QVector<DToolChannel> linked;
    std::copy_if(channels.cbegin(), channels.cend(), std::back_inserter(linked),
                 [](const DToolChannel& channel) { return !channel.link.isEmpty(); });
    return linked;
}

QVariant valueOf(const ChannelRow& row)
{
    return row.reading != nullptr ? row.reading->results().value(QStringLiteral("value")) : QVariant();
}

Json toJson(const DTool& tool, const ChannelRow& row)
{
    const DToolChannel& channel = row.channel;
    Json json = {{"type", "channel"},
                 {"tool", toJson(tool.objectName())},
                 {"channel", toJson(channel.id)},
                 {"name", toJson(channel.name)},
                 {"visibility", toJson(channel.visibility)},
                 {"channelType", toJson(row.item("type"))},
                 {"direction", toJson(row.item("direction"))},
                 {"link", channel.link.isEmpty() ? Json() : toJson(channel.link)},
                 {"value", toJson(valueOf(row))}};
    if (row.reading != nullptr && row.reading->failure()) {
        json["kind"] = toJson(row.reading->failure().kindName());
        json["reason"] = toJson(row.reading->failure().text.english());
    }
    return json;
}

void write(const DTool& tool, const std::vector<ChannelRow>& rows, Output* output)
{
    Table table({12, 14, 9, 10, 7});
    table.add({QStringLiteral("CHANNEL"), QStringLiteral("TYPE"), QStringLiteral("DIRECTION"),
               QStringLiteral("LINK"), QStringLiteral("VALUE"), QStringLiteral("NAME")});
    for (const ChannelRow& row : rows) {
        const DToolChannel& channel = row.channel;
        output->json([&] { return toJson(tool, row); });
        table.add({channel.id, row.item("type"), row.item("direction"), channel.link, valueText(valueOf(row)),
                   channel.name});
    }
    output->text(table.text());
}

} // namespace

int listChannels(DTool* tool, Output* output)
{
    const QVector<DToolChannel> channels = tool->channels();
    OrderRun readings(tool, forEach(linkedOf(channels), QStringLiteral("getValue")));
    readings.start();
    readings.wait();
    readings.stop(); // the program may end before they do
    std::vector<ChannelRow> rows;
    auto reading = readings.orders().cbegin();
    for (const DToolChannel& channel : channels) {
        rows.push_back({channel, channel.link.isEmpty() ? nullptr : (reading++)->get()});
    }
    write(*tool, rows, output);
    int status = ExitSuccess;
    for (const ChannelRow& row : rows) {
        if (row.reading != nullptr && row.reading->failure()) {
            diagnostic(QStringLiteral("channel \"%1\": %2")
                           .arg(row.channel.id, row.reading->failure().text.english()));
            status = std::max(status, exitStatusOf(row.reading->failure()));
        }
    }
    return status;
}
