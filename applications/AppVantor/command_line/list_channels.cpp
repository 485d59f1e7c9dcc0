#include "list_channels.h"

#include "order_status.h"

#include "../bench/exit_status.h"
#include "../bench/value_text.h"

#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>

#include <QEventLoop>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

struct ChannelRow
{
    QString id;
    QString name;
    QString visibility;
    QString type;
    QString direction;
    QString link;
    std::unique_ptr<DOrder> reading; ///< null for a channel that is linked to nothing
};

std::vector<ChannelRow> rowsOf(DTool* tool)
{
    std::vector<ChannelRow> rows;
    const QVariantList channels = tool->toolConfiguration.value(QStringLiteral("channels")).toList();
    for (const QVariant& element : channels) {
        const QVariantMap entry = element.toMap();
        ChannelRow row;
        row.id = entry.value(QStringLiteral("id")).toString();
        row.name = entry.value(QStringLiteral("name")).toString();
        row.visibility = entry.value(QStringLiteral("visibility")).toString();
        const auto item = [&](const QString& key) {
            return tool->getInfoFromChannel(row.id, key, QMetaType::QString, QVariant()).toString();
        };
        row.type = item(QStringLiteral("type"));
        row.direction = item(QStringLiteral("direction"));
        row.link = item(QStringLiteral("link"));
        if (!row.link.isEmpty()) {
            row.reading = std::make_unique<DOrder>(tool, QStringLiteral("getValue"),
                                                   QVariantMap{{QStringLiteral("channel"), row.id}});
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

/// Runs all readings and waits for their ends.
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
    const int started = running;
    for (ChannelRow& row : *rows) {
        if (row.reading != nullptr) {
            row.reading->start();
        }
    }
    if (started > 0 && running > 0) {
        loop.exec();
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

void write(const ChannelRow& row, Output* output)
{
    const QVariant value =
        row.reading != nullptr ? row.reading->results().value(QStringLiteral("value")) : QVariant();
    Json json = {{"id", toJson(row.id)},
                 {"name", toJson(row.name)},
                 {"visibility", toJson(row.visibility)},
                 {"type", toJson(row.type)},
                 {"direction", toJson(row.direction)},
                 {"link", row.link.isEmpty() ? Json() : toJson(row.link)},
                 {"value", toJson(value)}};
    QString shown = valueText(value);
    if (row.reading != nullptr && !row.reading->isSuccessful()) {
        json["problem"] = toJson(row.reading->reason());
        shown = row.reading->reason();
    }
    output->write(json, tableRow({row.id, row.type, row.direction, row.link, shown, row.name}));
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
        write(row, output);
        status = std::max(status, row.reading != nullptr ? exitStatusOf(*row.reading) : ExitSuccess);
    }
    return status;
}
