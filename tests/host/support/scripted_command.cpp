#include "scripted_command.h"

ScriptedCommand::ScriptedCommand(const std::shared_ptr<CommandScript>& script, const QVariantMap& parameters,
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

ScriptedCommand::~ScriptedCommand()
{
    --m_script->alive;
}

bool ScriptedCommand::commandExecute()
{
    if (!DAbstractCommand::commandExecute()) {
        return false;
    }
    return !m_script->execute || m_script->execute(*this);
}

void ScriptedCommand::finishTheCommand(bool& ok)
{
    ++m_script->finishes;
    m_script->outcomes.append(ok);
    if (m_script->onFinish) {
        m_script->onFinish(*this);
    }
    commandFinish(ok);
}

QSharedPointer<ICommand> ScriptedCommand::createCommand(const QVariantMap& parameters)
{
    return QSharedPointer<ICommand>(new ScriptedCommand(m_script, parameters, parent()));
}

quint64 ScriptedCommand::send(const QString& instruction, const QVariantMap& arguments, int timeoutMs)
{
    return addInstruction(QStringLiteral("device"), instruction, arguments, timeoutMs,
                          ReplyDelegate(this, &ScriptedCommand::onReply));
}

quint64 ScriptedCommand::sendTo(const QString& target, const QString& instruction)
{
    return addInstruction(target, instruction, {}, 0, ReplyDelegate(this, &ScriptedCommand::onReply));
}

bool ScriptedCommand::onReply(quint64 id, const QVariantMap& reply)
{
    return !m_script->onReply || m_script->onReply(*this, id, reply);
}
