#include "lifecycle_rules.h"

#include "require.h"

void CommandRules::commandLinked(DOrder* order)
{
    require(m_commands.emplace(order->id(), Command()).second, "an order makes one command");
}

void CommandRules::executeBegins(quint64 order)
{
    Command& command = m_commands.at(order);
    require(!command.executed && !command.finished, "a command is executed once");
    command.executed = true;
}

void CommandRules::sendEnds(quint64 order, quint64 request)
{
    Command& command = m_commands.at(order);
    require(request != 0 && !command.finished, "a command sends while its order runs only");
    command.sent.insert(request);
}

void CommandRules::replyBegins(quint64 order, quint64 request, const QVariantMap& reply)
{
    Q_UNUSED(reply)
    const Command& command = m_commands.at(order);
    require(!command.finished, "no reply reaches a command after its end");
    require(command.sent.contains(request), "a command gets replies to its own requests");
}

void CommandRules::finishBegins(quint64 order, bool ok)
{
    Q_UNUSED(ok)
    Command& command = m_commands.at(order);
    require(command.executed && !command.finished, "a command is finished once");
    command.finished = true;
}

void CommandRules::commandDestroyed(quint64 order)
{
    const Command& command = m_commands.at(order);
    require(command.finished || !command.executed, "a command is finished before it goes");
    m_commands.erase(order);
}

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
