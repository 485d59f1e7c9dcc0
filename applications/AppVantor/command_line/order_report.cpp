#include "order_report.h"

#include "../bench/value_text.h"

#include <plugin_management/d_order.h>

#include <QDateTime>

namespace {

void reportEvent(const DOrder& order, int number, const QVariantMap& event, Output* output)
{
    const QDateTime now = QDateTime::currentDateTime();
    const Json json = {{"order", number},
                       {"command", toJson(order.commandName())},
                       {"time", toJson(now.toString(Qt::ISODateWithMs))},
                       {"event", toJson(QVariant(event))}};
    output->write(json, QStringLiteral("[%1] %2  %3")
                            .arg(number)
                            .arg(now.toString(QStringLiteral("HH:mm:ss.zzz")), assignmentsText(event)));
}

void reportEnd(const DOrder& order, int number, Output* output)
{
    const bool success = order.isSuccessful();
    Json json = {{"order", number}, {"command", toJson(order.commandName())}, {"success", success}};
    if (!success) {
        json["reason"] = toJson(order.reason());
    }
    json["results"] = toJson(QVariant(order.results()));
    if (success) {
        const QString results = assignmentsText(order.results());
        output->write(json,
                      QStringLiteral("[%1] %2: %3")
                          .arg(number)
                          .arg(order.commandName(), results.isEmpty() ? QStringLiteral("done") : results));
        return;
    }
    if (output->isJson()) {
        output->write(json, QString());
    }
    Output::diagnostic(
        QStringLiteral("[%1] %2 failed: %3").arg(number).arg(order.commandName(), order.reason()));
}

} // namespace

void reportOrder(DOrder* order, int number, Output* output)
{
    QObject::connect(order, &DOrder::eventReceived, order, [order, number, output](const QVariantMap& event) {
        reportEvent(*order, number, event, output);
    });
    QObject::connect(order, &DOrder::finished, order,
                     [order, number, output] { reportEnd(*order, number, output); });
}
