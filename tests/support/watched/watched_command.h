#pragma once

#include "command_observer.h"

#include <plugin_management/d_order.h>

/// A command of the plugin that tells what is done to it.
template <typename Command>
class Watched : public Command
{
public:
    Watched(CommandObserver* observer, const QVariantMap& parameters, QObject* parent)
        : Command(parameters, parent)
        , m_observer(observer)
    {}
    ~Watched() override
    {
        if (m_order != 0) {
            m_observer->commandDestroyed(m_order);
        }
    }
    Q_DISABLE_COPY(Watched)

    QSharedPointer<ICommand> createCommand(const QVariantMap& parameters) override
    {
        return QSharedPointer<ICommand>(new Watched(m_observer, parameters, this->parent()));
    }

    void linkWithItsOrder(QObject* order) override
    {
        Command::linkWithItsOrder(order);
        if (auto* linked = qobject_cast<DOrder*>(order)) {
            m_order = linked->id();
            m_observer->commandLinked(linked);
        }
    }

    bool commandExecute() override
    {
        m_observer->executeBegins(m_order);
        const bool accepted = Command::commandExecute();
        m_observer->executeEnds(m_order, accepted);
        return accepted;
    }

    quint64 addInstruction(const QString& target, const QString& instruction, const QVariantMap& arguments,
                           int timeoutMs, ICommand::ReplyDelegate onReply) override
    {
        m_observer->sendBegins(m_order, instruction, arguments, timeoutMs);
        const quint64 request = Command::addInstruction(target, instruction, arguments, timeoutMs, onReply);
        m_observer->sendEnds(m_order, request);
        return request;
    }

    bool setReply(quint64 request, const QVariantMap& reply) override
    {
        m_observer->replyBegins(m_order, request, reply);
        const bool accepted = Command::setReply(request, reply);
        m_observer->replyEnds(m_order, request, accepted);
        return accepted;
    }

    void finishTheCommand(bool& ok) override
    {
        m_observer->finishBegins(m_order, ok);
        Command::finishTheCommand(ok);
        m_observer->finishEnds(m_order);
    }

private:
    CommandObserver* m_observer;
    quint64 m_order = 0;
};
