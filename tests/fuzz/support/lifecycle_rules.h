#pragma once

#include "require.h"

#include <plugin_management/d_order.h>

#include <QSet>

#include <command_observer.h>
#include <map>

/// Requires of every command that it is executed and finished once, sends while its order runs only, and
/// hears of its own requests only, before its end.
class CommandRules final : public CommandObserver
{
public:
    void commandLinked(DOrder* order) override
    {
        require(m_commands.emplace(order->id(), Command()).second, "an order makes one command");
    }

    void executeBegins(quint64 order) override
    {
        Command& command = m_commands.at(order);
        require(!command.executed && !command.finished, "a command is executed once");
        command.executed = true;
    }

    void executeEnds(quint64, bool) override {}
    void sendBegins(quint64, const QString&, const QVariantMap&, int) override {}

    void sendEnds(quint64 order, quint64 request) override
    {
        Command& command = m_commands.at(order);
        require(request != 0 && !command.finished, "a command sends while its order runs only");
        command.sent.insert(request);
    }

    void replyBegins(quint64 order, quint64 request, const QVariantMap& reply) override
    {
        Q_UNUSED(reply)
        const Command& command = m_commands.at(order);
        require(!command.finished, "no reply reaches a command after its end");
        require(command.sent.contains(request), "a command gets replies to its own requests");
    }

    void replyEnds(quint64, quint64, bool) override {}

    void finishBegins(quint64 order, bool ok) override
    {
        Q_UNUSED(ok)
        Command& command = m_commands.at(order);
        require(command.executed && !command.finished, "a command is finished once");
        command.finished = true;
    }

    void finishEnds(quint64) override {}

    void commandDestroyed(quint64 order) override
    {
        const Command& command = m_commands.at(order);
        require(command.finished || !command.executed, "a command is finished before it goes");
        m_commands.erase(order);
    }

private:
    struct Command
    {
        bool executed = false;
        bool finished = false;
        QSet<quint64> sent;
    };

    std::map<quint64, Command> m_commands; ///< by their orders
};

/// Watches order from before its start: its signals must agree with its state, and none comes after its end.
inline void watchOrder(DOrder* order)
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
