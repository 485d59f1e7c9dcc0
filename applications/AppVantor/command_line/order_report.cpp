#include "order_report.h"

#include <configuration/value_text.h>
#include <plugin_management/d_device.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_scheduler.h>
#include <plugin_management/d_tool.h>
#include <process/diagnostics.h>
#include <process/time_text.h>

namespace {

/// The wall-clock time that belongs to timeUs of the steady clock.
qint64 wallClock(const DOrder& order, qint64 timeUs)
{
    const DDevice* device = order.tool() != nullptr ? order.tool()->device() : nullptr;
    return device != nullptr ? device->scheduler()->wallClock(timeUs) : timeUs;
}

void reportEvent(const DOrder& order, int number, const QVariantMap& event, qint64 timeUs, Output* output)
{
    const qint64 time = wallClock(order, timeUs);
    output->writeEvent(
        number,
        [&] {
            return Json{{"order", number},
                        {"command", toJson(order.commandName())},
                        {"time", toJson(fullTime(time))},
                        {"event", toJson(QVariant(event))}};
        },
        [&] {
            return QStringLiteral("[%1] %2  %3").arg(number).arg(timeOfDay(time), assignmentsText(event));
        });
}

QString successText(const DOrder& order, int number)
{
    const QString results = assignmentsText(order.results());
    return QStringLiteral("[%1] %2: %3")
        .arg(number)
        .arg(order.commandName(), results.isEmpty() ? QStringLiteral("done") : results);
}

Json endJson(const DOrder& order, int number)
{
    Json json = {
        {"order", number}, {"command", toJson(order.commandName())}, {"success", order.isSuccessful()}};
    if (order.failure()) {
        json["kind"] = toJson(order.failure().kindName());
        json["reason"] = toJson(order.failure().text);
    }
    json["results"] = toJson(QVariant(order.results()));
    if (order.rejectedReplies() > 0) {
        json["rejected"] = order.rejectedReplies();
    }
    return json;
}

void reportEnd(const DOrder& order, int number, Output* output)
{
    output->endOfEvents(number);
    if (output->isJson() || order.isSuccessful()) {
        output->write([&] { return endJson(order, number); }, [&] { return successText(order, number); });
    }
    if (order.rejectedReplies() > 0) {
        diagnostic(QStringLiteral("[%1] %2 rejected replies of the device: %3")
                       .arg(number)
                       .arg(order.commandName())
                       .arg(order.rejectedReplies()));
    }
    if (order.failure()) {
        diagnostic(
            QStringLiteral("[%1] %2 failed: %3").arg(number).arg(order.commandName(), order.failure().text));
    }
}

} // namespace

void reportOrder(DOrder* order, int number, Output* output)
{
    if (order->state() == DOrder::State::Finished) {
        reportEnd(*order, number, output);
        return;
    }
    QObject::connect(order, &DOrder::eventReceived, order,
                     [order, number, output](const QVariantMap& event, qint64 timeUs) {
                         reportEvent(*order, number, event, timeUs, output);
                     });
    QObject::connect(order, &DOrder::eventsLost, order,
                     [number, output](quint64 count) { output->eventsLost(number, count); });
    QObject::connect(order, &DOrder::finished, order,
                     [order, number, output] { reportEnd(*order, number, output); });
}
