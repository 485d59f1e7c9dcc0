#include <plugin_management/d_abstract_command.h>

#include "records.h"

CommandRecord& recordOf(const DAbstractCommand& command)
{
    return *command.m_record;
}

QSharedPointer<ICommand> commandOfAnOrder(DAbstractCommand& prototype, const QVariantMap& arguments)
{
    QSharedPointer<ICommand> command = prototype.createCommand(arguments);
    if (!hostHas(HostHabit::KeepsParents)) {
        dynamic_cast<DAbstractCommand&>(*command).setParent(nullptr);
    }
    return command;
}

namespace {

/// value, as a type if the host converts; no value stays none.
QVariant converted(const QVariant& value, QMetaType::Type type)
{
    QVariant result = value;
    if (value.isValid() && hostHas(HostHabit::ConvertsValues)) {
        result.convert(type);
    }
    return result;
}

QVariant convertedToTag(const QVariant& value, const QString& tag)
{
    static const QMap<QString, QMetaType::Type> types = {{QStringLiteral("strg"), QMetaType::QString},
                                                         {QStringLiteral("ui16"), QMetaType::UShort},
                                                         {QStringLiteral("int"), QMetaType::Int},
                                                         {QStringLiteral("bool"), QMetaType::Bool}};
    const auto type = types.constFind(tag);
    return type == types.constEnd() ? value : converted(value, *type);
}

QString told(const QVariant& fallback)
{
    return fallback.isValid() ? QStringLiteral(" with a fallback") : QString();
}

void note(const DAbstractCommand& command, const QString& call)
{
    recordOf(command).calls.append(call);
    noteCall(call);
}

} // namespace

DAbstractCommand::DAbstractCommand(const QString& name, const QVariantMap& parameters, QObject* parent)
    : DObject(name, parent)
    , m_record(std::make_unique<CommandRecord>())
{
    m_record->parent = parent;
    m_record->name = name;
    m_record->arguments = parameters;
    note(*this, QStringLiteral("construct ") + name);
}

DAbstractCommand::DAbstractCommand(const QString& name, const QString& stopCommandName,
                                   const QVariantMap& parameters, QObject* parent)
    : DAbstractCommand(name, parameters, parent)
{
    m_record->stopName = stopCommandName;
    m_record->isStoppable = true;
}

DAbstractCommand::~DAbstractCommand()
{
    noteCall(QStringLiteral("destroy ") + m_record->name);
}

void DAbstractCommand::linkWithItsOrder(QObject*) {}

QString DAbstractCommand::commandName() const
{
    return m_record->name;
}

QString DAbstractCommand::stopCommandName() const
{
    return m_record->stopName;
}

quint64 DAbstractCommand::getOrderId() const
{
    return 0;
}

quint64 DAbstractCommand::getParameterOrderId() const
{
    return 0;
}

bool DAbstractCommand::isRecurrent() const
{
    return false;
}

bool DAbstractCommand::isValid() const
{
    return true;
}

QString DAbstractCommand::description() const
{
    return m_record->description;
}

QString DAbstractCommand::fullDescription() const
{
    return m_record->description;
}

QVariantMap DAbstractCommand::commandArguments() const
{
    return m_record->arguments;
}

bool DAbstractCommand::commandExecute()
{
    note(*this, QStringLiteral("commandExecute"));
    return m_record->executeAnswer;
}

bool DAbstractCommand::setReply(quint64 instructionId, const QVariantMap& reply)
{
    for (const CommandRecord::Instruction& instruction : qAsConst(m_record->instructions)) {
        if (instruction.id == instructionId) {
            const auto onReply = instruction.onReply;
            return onReply.empty() || onReply(instructionId, reply);
        }
    }
    return false;
}

void DAbstractCommand::finishTheCommand(bool& ok)
{
    note(*this, QStringLiteral("finishTheCommand"));
    commandFinish(ok);
}

quint64 DAbstractCommand::addInstruction(const QString& target, const QString& instruction,
                                         const QVariantMap& arguments, int timeoutMs, Delegate onReply)
{
    note(*this, QStringLiteral("addInstruction ") + instruction);
    const quint64 id = m_record->nextInstructionId++;
    m_record->instructions.append({id, target, instruction, arguments, timeoutMs, onReply});
    return id;
}

void DAbstractCommand::setDescription(const QString& description)
{
    note(*this, QStringLiteral("setDescription"));
    m_record->description = description;
}

void DAbstractCommand::declareAParameter(const QString& name, const QString& typeTag,
                                         const QString& description, const QVariant& defaultValue)
{
    note(*this, QStringLiteral("declareAParameter ") + name);
    m_record->parameters.append({name, typeTag, description, defaultValue});
}

void DAbstractCommand::declareAResult(const QString& name, const QString& typeTag, const QString& description,
                                      const QVariant& defaultValue)
{
    note(*this, QStringLiteral("declareAResult ") + name);
    m_record->results.append({name, typeTag, description, defaultValue});
}

QVariant DAbstractCommand::getParameterValue(const QString& name, const QVariant& fallback) const
{
    note(*this, QStringLiteral("getParameterValue ") + name + told(fallback));
    for (const CommandRecord::Declaration& parameter : qAsConst(m_record->parameters)) {
        if (parameter.name == name) {
            const QVariant value = m_record->arguments.value(name, parameter.defaultValue);
            return convertedToTag(value, parameter.typeTag);
        }
    }
    return m_record->arguments.value(name, fallback);
}

QVariant DAbstractCommand::getParametersSection(const QString& name)
{
    note(*this, QStringLiteral("getParametersSection ") + name);
    return m_record->sections.value(name);
}

QString DAbstractCommand::getLinkedChannel(const QString& toolChannel)
{
    note(*this, QStringLiteral("getLinkedChannel ") + toolChannel);
    return m_record->channels.value(toolChannel).link;
}

QVariant DAbstractCommand::getInfoFromChannel(const QString& toolChannel, const QString& infoKey,
                                              QMetaType::Type type, const QVariant& fallback)
{
    note(*this, QStringLiteral("getInfoFromChannel %1 %2 as %3%4")
                    .arg(toolChannel, infoKey, QLatin1String(QMetaType::typeName(type)), told(fallback)));
    return converted(m_record->channels.value(toolChannel).items.value(infoKey, fallback), type);
}

void DAbstractCommand::stopTheInstruction(quint64 instructionId)
{
    note(*this, QStringLiteral("stopTheInstruction %1").arg(instructionId));
    m_record->stoppedInstructions.append(instructionId);
}

bool DAbstractCommand::commandUpdateResult(const QString& name, const QVariant& value)
{
    note(*this, QStringLiteral("commandUpdateResult ") + name);
    m_record->updatedResults.append({name, value});
    return m_record->updateAnswer;
}

void DAbstractCommand::commandSetReply(const QVariantMap& reply)
{
    note(*this, QStringLiteral("commandSetReply"));
    m_record->replies.append(reply);
}

void DAbstractCommand::commandFinish(bool& ok)
{
    note(*this, QStringLiteral("commandFinish"));
    m_record->finishes.append(ok);
    m_record->finishFlags.append(&ok);
}
