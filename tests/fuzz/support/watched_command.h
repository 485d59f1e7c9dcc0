#pragma once

#include "require.h"

#include <plugin_management/d_abstract_command.h>

#include <QSet>

/// A command of the plugin that checks what its order makes it go through.
template <typename Command>
class Watched : public Command
{
public:
    Watched(const QVariantMap& arguments, QObject* parent)
        : Command(arguments, parent)
    {}
    ~Watched() override { require(m_finished || !m_executed, "a command is finished before it goes"); }
    Q_DISABLE_COPY(Watched)

    bool commandExecute() override
    {
        require(!m_executed && !m_finished, "a command is executed once");
        m_executed = true;
        return Command::commandExecute();
    }

    bool setReply(quint64 id, const QVariantMap& reply) override
    {
        require(!m_finished, "no reply reaches a command after its end");
        require(m_sent.contains(id), "a command gets replies to its own requests");
        return Command::setReply(id, reply);
    }

    void finishTheCommand(bool& ok) override
    {
        require(m_executed && !m_finished, "a command is finished once");
        m_finished = true;
        Command::finishTheCommand(ok);
    }

    quint64 addInstruction(const QString& target, const QString& instruction, const QVariantMap& arguments,
                           int timeoutMs, ICommand::ReplyDelegate onReply) override
    {
        const quint64 id = Command::addInstruction(target, instruction, arguments, timeoutMs, onReply);
        require(id != 0 && !m_finished, "a command sends while its order runs only");
        m_sent.insert(id);
        return id;
    }

    QSharedPointer<ICommand> createCommand(const QVariantMap& arguments) override
    {
        return QSharedPointer<ICommand>(new Watched(arguments, this->parent()));
    }

private:
    bool m_executed = false;
    bool m_finished = false;
    QSet<quint64> m_sent;
};
