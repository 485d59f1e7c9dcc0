#include "order_watch.h"

#include "require.h"

void watchOrder(DOrder* order)
{
    QObject::connect(order, &DOrder::resultUpdated, order, [order](const QString& name) {
        require(order->state() == DOrder::State::Running, "results are updated while the order runs");
        require(order->results().contains(name), "an updated result is one of the order's");
    });
    QObject::connect(order, &DOrder::eventReceived, order, [order] {
        require(order->state() == DOrder::State::Running, "events come while the order runs");
    });
    QObject::connect(order, &DOrder::finished, order, [order, ended = false](bool success) mutable {
        require(!ended, "an order ends once");
        ended = true;
        require(order->state() == DOrder::State::Finished, "an order that ends is finished");
        require(!order->isListening(), "an order that has ended listens no more");
        require(success == order->isSuccessful() && success == !order->failure(),
                "an order keeps the outcome that it tells");
        require(success == order->failure().text.isEmpty(), "an order that fails says why, no other does");
    });
}
