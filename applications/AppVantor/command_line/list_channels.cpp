#include "list_channels.h"

#include "table.h"

#include <configuration/value_text.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>
#include <process/diagnostics.h>
#include <process/failure_status.h>

#include <QEventLoop>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

struct ChannelRow
{
    const DToolChannel& channel;
    QString type;
    QString direction;
    std::unique_ptr<DOrder> reading; ///< null for a channel that is linked to nothing
};

std::vector<ChannelRow> rowsOf(DTool* tool)
{
    std::vector<ChannelRow> rows;
    for (const DToolChannel& channel : tool->channels()) {
        std::unique_ptr<DOrder> reading;
        if (!channel.link.isEmpty()) {
            reading = std::make_unique<DOrder>(tool, QStringLiteral("getValue"),
                                               QVariantMap{{QStringLiteral("channel"), channel.id}});
        }
        rows.push_back({channel, channel.items.value(QStringLiteral("type")).toString(),
                        channel.items.value(QStringLiteral("direction")).toString(), std::move(reading)});
    }
    return rows;
}

/// Runs all readings and waits for their ends; those that are under way when the program ends are stopped.
void read(std::vector<ChannelRow>* rows)
{
    QEventLoop loop;
    int running = 0;
    for (ChannelRow& row : *rows) {
        if (row.reading != nullptr) {
            ++running;
            QObject::connect(row.reading.get(), &DOrder::finished, &loop, [&loop, &running] {
                if (--running == 0) {
                    loop.quit();
                }
            });
        }
    }
    for (ChannelRow& row : *rows) {
        if (row.reading != nullptr) {
            row.reading->start();
        }
    }
    if (running > 0) {
        loop.exec();
    }
    for (ChannelRow& row : *rows) {
        if (row.reading != nullptr) {
            row.reading->stop();
        }
    }
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
                 {"channelType", toJson(row.type)},
                 {"direction", toJson(row.direction)},
                 {"link", channel.link.isEmpty() ? Json() : toJson(channel.link)},
                 {"value", toJson(valueOf(row))}};
    if (row.reading != nullptr && row.reading->failure()) {
        json["kind"] = toJson(row.reading->failure().kindName());
        json["reason"] = toJson(row.reading->failure().text);
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
        table.add({channel.id, row.type, row.direction, channel.link, valueText(valueOf(row)), channel.name});
    }
    output->text(table.text());
}

} // namespace

int listChannels(DTool* tool, Output* output)
{
    std::vector<ChannelRow> rows = rowsOf(tool);
    read(&rows);
    write(*tool, rows, output);
    int status = ExitSuccess;
    for (const ChannelRow& row : rows) {
        if (row.reading != nullptr && row.reading->failure()) {
            diagnostic(QStringLiteral("channel \"%1\": %2").arg(row.channel.id, row.reading->failure().text));
            status = std::max(status, exitStatusOf(row.reading->failure()));
        }
    }
    return status;
}
