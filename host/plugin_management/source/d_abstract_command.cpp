#include <plugin_management/d_abstract_command.h>

#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>

#include <QVarLengthArray>

#include <algorithm>

struct DAbstractCommand::Private
{
    DCommandDescription declaration;
    QVariantMap arguments;
    DOrder* order = nullptr;
    bool finished = false;
    struct Instruction
    {
        quint64 id;
        ReplyDelegate onReply;
    };
    using Instructions = QVarLengthArray<Instruction, 1>;
    Instructions instructions; ///< those that are not over

    Instructions::iterator instruction(quint64 id);
    const DTool* tool() const;
};

DAbstractCommand::Private::Instructions::iterator DAbstractCommand::Private::instruction(quint64 id)
{
    return std::find_if(instructions.begin(), instructions.end(),
                        [id](const Instruction& pending) { return pending.id == id; });
}

DAbstractCommand::DAbstractCommand(const QString& name, const QVariantMap& parameters, QObject* parent)
    : DAbstractCommand(name, QString(), parameters, parent)
{}

DAbstractCommand::DAbstractCommand(const QString& name, const QString& stopCommandName,
                                   const QVariantMap& parameters, QObject* parent)
    : DObject(name, parent)
    , d(std::make_unique<Private>())
{
    d->declaration.name = name;
    d->declaration.stopName = stopCommandName;
    d->arguments = parameters;
}

DAbstractCommand::~DAbstractCommand() = default;

void DAbstractCommand::linkWithItsOrder(QObject* order)
{
    d->order = qobject_cast<DOrder*>(order);
    if (d->order == nullptr) {
        d->instructions.clear();
    }
}

QString DAbstractCommand::commandName() const
{
    return d->declaration.name;
}

QString DAbstractCommand::stopCommandName() const
{
    return d->declaration.stopName;
}

quint64 DAbstractCommand::getOrderId() const
{
    return d->order != nullptr ? d->order->id() : 0;
}

quint64 DAbstractCommand::getParameterOrderId() const
{
    return d->arguments.value(QStringLiteral("orderId")).toULongLong();
}

bool DAbstractCommand::isRecurrent() const
{
    return d->order != nullptr && d->order->isListening();
}

bool DAbstractCommand::isValid() const
{
    return d->order != nullptr && !d->finished;
}

QString DAbstractCommand::description() const
{
    return d->declaration.description;
}

QString DAbstractCommand::fullDescription() const
{
    QString text = d->declaration.description;
    const auto list = [&text](const QString& title, const DDeclarations& declarations) {
        for (const DDeclaration& declared : declarations) {
            text += QStringLiteral("\n%1 %2 (%3): %4")
                        .arg(title, declared.name, declared.typeTag, declared.description);
        }
    };
    list(QStringLiteral("parameter"), d->declaration.parameters);
    list(QStringLiteral("result"), d->declaration.results);
    return text;
}

QVariantMap DAbstractCommand::commandArguments() const
{
    return d->arguments;
}

bool DAbstractCommand::commandExecute()
{
    return isValid();
}

bool DAbstractCommand::setReply(quint64 instructionId, const QVariantMap& reply)
{
    const auto pending = d->instruction(instructionId);
    if (pending == d->instructions.end()) {
        return false;
    }
    const ReplyDelegate onReply = pending->onReply; // a reply may end its instruction
    return onReply.empty() || onReply(instructionId, reply);
}

void DAbstractCommand::finishTheCommand(bool& ok)
{
    commandFinish(ok);
}

quint64 DAbstractCommand::addInstruction(const QString& target, const QString& instruction,
                                         const QVariantMap& arguments, int timeoutMs, ReplyDelegate onReply)
{
    const quint64 id =
        d->order != nullptr ? d->order->addInstruction(target, instruction, arguments, timeoutMs) : 0;
    if (id != 0) {
        d->instructions.append({id, onReply});
    }
    return id;
}

void DAbstractCommand::forgetInstruction(quint64 instructionId)
{
    const auto pending = d->instruction(instructionId);
    if (pending != d->instructions.end()) {
        d->instructions.erase(pending);
    }
}

const DCommandDescription& DAbstractCommand::declaration() const
{
    return d->declaration;
}

void DAbstractCommand::setDescription(const QString& description)
{
    d->declaration.description = description;
}

void DAbstractCommand::declareAParameter(const QString& name, const QString& typeTag,
                                         const QString& description, const QVariant& defaultValue)
{
    d->declaration.parameters.push_back({name, typeTag, description, defaultValue});
}

void DAbstractCommand::declareAResult(const QString& name, const QString& typeTag, const QString& description,
                                      const QVariant& defaultValue)
{
    d->declaration.results.push_back({name, typeTag, description, defaultValue});
}

QVariant DAbstractCommand::getParameterValue(const QString& name, const QVariant& fallback) const
{
    const auto argument = d->arguments.constFind(name);
    if (argument != d->arguments.constEnd()) {
        return *argument;
    }
    if (fallback.isValid()) {
        return fallback;
    }
    const DDeclarations& parameters = d->declaration.parameters;
    for (const DDeclaration& parameter : parameters) {
        if (parameter.name == name) {
            return parameter.defaultValue;
        }
    }
    return QVariant();
}

QVariant DAbstractCommand::getParametersSection(const QString& name)
{
    return d->arguments.value(name);
}

const DTool* DAbstractCommand::Private::tool() const
{
    return order != nullptr ? order->tool() : nullptr;
}

QString DAbstractCommand::getLinkedChannel(const QString& toolChannel)
{
    const DTool* tool = d->tool();
    return tool != nullptr ? tool->getLinkedChannel(toolChannel) : QString();
}

QVariant DAbstractCommand::getInfoFromChannel(const QString& toolChannel, const QString& infoKey,
                                              QMetaType::Type type, const QVariant& fallback)
{
    const DTool* tool = d->tool();
    return tool != nullptr ? tool->getInfoFromChannel(toolChannel, infoKey, type, fallback) : fallback;
}

void DAbstractCommand::stopTheInstruction(quint64 instructionId)
{
    if (d->order != nullptr) {
        d->order->stopInstruction(instructionId);
    }
}

bool DAbstractCommand::commandUpdateResult(const QString& name, const QVariant& value)
{
    return d->order != nullptr && d->order->updateResult(name, value);
}

void DAbstractCommand::commandSetReply(const QVariantMap& reply)
{
    if (d->order != nullptr) {
        d->order->passOnReply(reply);
    }
}

void DAbstractCommand::commandFinish(bool& ok)
{
    if (d->finished) {
        return;
    }
    d->finished = true;
    if (d->order != nullptr) {
        d->order->commandHasFinished(*this, ok);
    } else {
        Q_EMIT sigCommandFinished(ok);
    }
}
