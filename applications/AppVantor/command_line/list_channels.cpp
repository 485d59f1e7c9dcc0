#include "list_channels.h"

#include <configuration/value_text.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>
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

QString tableRow(const QStringList& cells)
{
    constexpr int widths[] = {12, 14, 9, 10, 7};
    QString row;
    for (int column = 0; column + 1 < cells.size(); ++column) {
        row += cells.at(column).leftJustified(widths[column]) + QLatin1Char(' ');
    }
    return row + cells.last();
}

void write(const DTool& tool, const ChannelRow& row, Output* output)
{
    const DToolChannel& channel = row.channel;
    const QVariant value =
        row.reading != nullptr ? row.reading->results().value(QStringLiteral("value")) : QVariant();
    const DFailure failure = row.reading != nullptr ? row.reading->failure() : DFailure();
    output->write(
        [&] {
            Json json = {{"type", "channel"},
                         {"tool", toJson(tool.objectName())},
                         {"channel", toJson(channel.id)},
                         {"name", toJson(channel.name)},
                         {"visibility", toJson(channel.visibility)},
                         {"channelType", toJson(row.type)},
                         {"direction", toJson(row.direction)},
                         {"link", channel.link.isEmpty() ? Json() : toJson(channel.link)},
                         {"value", toJson(value)}};
            if (failure) {
                json["kind"] = toJson(failure.kindName());
                json["reason"] = toJson(failure.text);
            }
            return json;
        },
        [&] {
            return tableRow({channel.id, row.type, row.direction, channel.link,
                             failure ? failure.text : valueText(value), channel.name});
        });
}

} // namespace

int listChannels(DTool* tool, Output* output)
{
    std::vector<ChannelRow> rows = rowsOf(tool);
    read(&rows);
    output->text(tableRow({QStringLiteral("CHANNEL"), QStringLiteral("TYPE"), QStringLiteral("DIRECTION"),
                           QStringLiteral("LINK"), QStringLiteral("VALUE"), QStringLiteral("NAME")}));
    int status = ExitSuccess;
    for (const ChannelRow& row : rows) {
        write(*tool, row, output);
        status =
            std::max(status, row.reading != nullptr ? exitStatusOf(row.reading->failure()) : ExitSuccess);
    }
    return status;
}
