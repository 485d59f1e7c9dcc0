#pragma once

#include <plugin_management/d_abstract_command.h>

#include <QPointer>

#include <functional>
#include <memory>

class ScriptedCommand;

/// What the commands of one name do, and what became of them.
struct CommandScript
{
    QString name = QStringLiteral("work");
    QString stopName;
    QString description = QStringLiteral("Works");
    DDeclarations parameters;
    DDeclarations results;

    /// Called by commandExecute after the base accepted; without one the command accepts and does nothing.
    std::function<bool(ScriptedCommand&)> execute;
    /// Called with each reply; without one every reply is accepted.
    std::function<bool(ScriptedCommand&, quint64, const QVariantMap&)> onReply;
    /// Called by finishTheCommand before the base's work.
    std::function<void(ScriptedCommand&)> onFinish;

    int alive = 0;
    int finishes = 0;
    QVector<bool> outcomes;
    /// The latest instance, prototype or not.
    QPointer<ScriptedCommand> latest;
};

/// A command that follows its script.
class ScriptedCommand : public DAbstractCommand
{
    Q_OBJECT
    Q_DISABLE_COPY(ScriptedCommand)

public:
    ScriptedCommand(const std::shared_ptr<CommandScript>& script, const QVariantMap& parameters,
                    QObject* parent)
        : DAbstractCommand(script->name, script->stopName, parameters, parent)
        , m_script(script)
    {
        setDescription(script->description);
        for (const DDeclaration& declared : qAsConst(script->parameters)) {
            declareAParameter(declared.name, declared.typeTag, declared.description, declared.defaultValue);
        }
        for (const DDeclaration& declared : qAsConst(script->results)) {
            declareAResult(declared.name, declared.typeTag, declared.description, declared.defaultValue);
        }
        ++script->alive;
        script->latest = this;
    }

    ~ScriptedCommand() override { --m_script->alive; }

    bool commandExecute() override
    {
        if (!DAbstractCommand::commandExecute()) {
            return false;
        }
        return !m_script->execute || m_script->execute(*this);
    }

    void finishTheCommand(bool& ok) override
    {
        ++m_script->finishes;
        m_script->outcomes.append(ok);
        if (m_script->onFinish) {
            m_script->onFinish(*this);
        }
        commandFinish(ok);
    }

    QSharedPointer<ICommand> createCommand(const QVariantMap& parameters) override
    {
        return QSharedPointer<ICommand>(new ScriptedCommand(m_script, parameters, parent()));
    }

    /// Sends a request to the device; its replies go to the script.
    quint64 send(const QString& instruction, const QVariantMap& arguments = {}, int timeoutMs = 0)
    {
        return addInstruction(QStringLiteral("device"), instruction, arguments, timeoutMs,
                              ReplyDelegate(this, &ScriptedCommand::onReply));
    }

    /// The same to any target.
    quint64 sendTo(const QString& target, const QString& instruction)
    {
        return addInstruction(target, instruction, {}, 0, ReplyDelegate(this, &ScriptedCommand::onReply));
    }

private:
    bool onReply(quint64 id, const QVariantMap& reply)
    {
        return !m_script->onReply || m_script->onReply(*this, id, reply);
    }

    std::shared_ptr<CommandScript> m_script;
};
