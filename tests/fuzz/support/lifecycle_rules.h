#pragma once

#include <command_observer.h>
#include <plugin_management/d_order.h>

#include <QSet>

#include <map>

/// Requires of every command that it is executed and finished once, sends while its order runs only, and
/// hears of its own requests only, before its end.
class CommandRules final : public CommandObserver
{
public:
    void commandLinked(DOrder* order) override;
    void executeBegins(quint64 order) override;
    void executeEnds(quint64, bool) override {}
    void sendBegins(quint64, const QString&, const QVariantMap&, int) override {}
    void sendEnds(quint64 order, quint64 request) override;
    void replyBegins(quint64 order, quint64 request, const QVariantMap& reply) override;
    void replyEnds(quint64, quint64, bool) override {}
    void finishBegins(quint64 order, bool ok) override;
    void finishEnds(quint64) override {}
    void commandDestroyed(quint64 order) override;

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
void watchOrder(DOrder* order);
