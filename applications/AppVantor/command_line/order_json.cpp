#include "order_json.h"

#include "failure_report.h"
#include "order_advice.h"

#include <plugin_management/d_device.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_scheduler.h>
#include <plugin_management/d_tool.h>
#include <process/time_text.h>

namespace {

/// An object about an order, of this type, with what stands in each of them. number is 0 for an order that
/// was refused before it had one.
Json orderJson(const char* type, const DOrder& order, int number)
{
    const QVariantMap arguments = order.arguments();
    const QString channel = arguments.value(QStringLiteral("channel")).toString();
    return {{"type", type},
            {"order", number > 0 ? Json(number) : Json()},
            {"tool", order.tool() != nullptr ? toJson(order.tool()->objectName()) : Json()},
            {"command", toJson(order.commandName())},
            {"channel", channel.isEmpty() ? Json() : toJson(channel)},
            {"arguments", toJson(QVariant(arguments))}};
}

} // namespace

qint64 wallClockOf(const DOrder& order, qint64 timeUs)
{
    const DDevice* device = order.tool() != nullptr ? order.tool()->device() : nullptr;
    return device != nullptr ? device->scheduler()->wallClock(timeUs) : timeUs;
}

Json warningJson(const DOrder& order, int number, const QString& warning, const Problem& place)
{
    Json json = orderJson("warning", order, number);
    json["warning"] = toJson(warning);
    addPlace(place, &json);
    return json;
}

Json eventJson(const DOrder& order, int number, const QVariantMap& event, qint64 timeUs)
{
    Json json = orderJson("event", order, number);
    json["time"] = toJson(fullTime(wallClockOf(order, timeUs)));
    json["results"] = toJson(QVariant(event));
    return json;
}

Json lostJson(const DOrder& order, int number, quint64 count, const QString& reason)
{
    Json json = orderJson("lost", order, number);
    json["lost"] = count;
    json["reason"] = toJson(reason);
    return json;
}

Json failureJson(const DOrder& order, int number, const Problem& place)
{
    Json json = orderJson("failure", order, number);
    json["kind"] = toJson(order.failure().kindName());
    json["reason"] = toJson(reasonOf(order));
    addPlace(place, &json);
    return json;
}

Json endJson(const DOrder& order, int number, const Problem& place)
{
    Json json = order.failure() ? failureJson(order, number, place) : orderJson("result", order, number);
    json["results"] = toJson(QVariant(order.results()));
    if (order.rejectedReplies() > 0) {
        json["rejected"] = order.rejectedReplies();
    }
    return json;
}

void followOrder(DOrder* order, int number, const std::function<void(const Json&)>& write)
{
    if (order->failure().kind == DFailure::Kind::WrongInvocation) {
        write(failureJson(*order, 0, {}));
        return;
    }
    const QString warning = warningOf(*order);
    if (!warning.isEmpty()) {
        write(warningJson(*order, number, warning, {}));
    }
    const auto writeEnd = [order, number, write] { write(endJson(*order, number, {})); };
    if (order->state() == DOrder::State::Finished) {
        writeEnd();
        return;
    }
    QObject::connect(order, &DOrder::eventReceived, order,
                     [order, number, write](const QVariantMap& event, qint64 timeUs) {
                         write(eventJson(*order, number, event, timeUs));
                     });
    QObject::connect(order, &DOrder::eventsLost, order, [order, number, write](quint64 count) {
        write(lostJson(*order, number, count, QStringLiteral("they came too fast")));
    });
    QObject::connect(order, &DOrder::finished, order, writeEnd);
}
