#include "thin_host.h"

#include <plugin_management/d_abstract_command.h>
#include <utilities/d_date.h>

ThinHost thinHost;

QString getDate()
{
    return QString();
}

DObject::DObject(const QString& name, QObject* parent)
    : QObject(parent){Q_UNUSED(name)}

    DObject::~DObject() = default;

struct DAbstractCommand::Private
{
    QVariantMap arguments;
};

DAbstractCommand::DAbstractCommand(const QString& name, const QVariantMap& parameters, QObject* parent)
    : DAbstractCommand(name, QString(), parameters, parent)
{}

DAbstractCommand::DAbstractCommand(const QString& name, const QString& stopCommandName,
                                   const QVariantMap& parameters, QObject* parent)
    : DObject(name, parent)
    , d(new Private{parameters}){Q_UNUSED(stopCommandName)}

      DAbstractCommand::~DAbstractCommand() = default;

void DAbstractCommand::linkWithItsOrder(QObject* order){Q_UNUSED(order)}

QString DAbstractCommand::commandName() const
{
    return QString();
}

QString DAbstractCommand::stopCommandName() const
{
    return QString();
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
    return QString();
}

QString DAbstractCommand::fullDescription() const
{
    return QString();
}

QVariantMap DAbstractCommand::commandArguments() const
{
    return d->arguments;
}

bool DAbstractCommand::commandExecute()
{
    return true;
}

bool DAbstractCommand::setReply(quint64 instructionId, const QVariantMap& reply)
{
    return thinHost.onReply(instructionId, reply);
}

void DAbstractCommand::finishTheCommand(bool& ok){Q_UNUSED(ok)}

quint64 DAbstractCommand::addInstruction(const QString& target, const QString& instruction,
                                         const QVariantMap& arguments, int timeoutMs, ReplyDelegate onReply)
{
    Q_UNUSED(target)
    Q_UNUSED(instruction)
    Q_UNUSED(timeoutMs)
    thinHost.request = arguments;
    thinHost.onReply = onReply;
    return 1;
}

void DAbstractCommand::setDescription(const QString& description)
{
    Q_UNUSED(description)
}

void DAbstractCommand::declareAParameter(const QString& name, const QString& typeTag,
                                         const QString& description, const QVariant& defaultValue)
{
    Q_UNUSED(name)
    Q_UNUSED(typeTag)
    Q_UNUSED(description)
    Q_UNUSED(defaultValue)
}

void DAbstractCommand::declareAResult(const QString& name, const QString& typeTag, const QString& description,
                                      const QVariant& defaultValue){
    Q_UNUSED(name) Q_UNUSED(typeTag) Q_UNUSED(description) Q_UNUSED(defaultValue)}

QVariant DAbstractCommand::getParameterValue(const QString& name, const QVariant& fallback) const
{
    return d->arguments.value(name, fallback);
}

QString DAbstractCommand::getLinkedChannel(const QString& toolChannel)
{
    return thinHost.links.value(toolChannel);
}

void DAbstractCommand::stopTheInstruction(quint64 instructionId)
{
    Q_UNUSED(instructionId)
}

bool DAbstractCommand::commandUpdateResult(const QString& name, const QVariant& value)
{
    thinHost.results.insert(name, value);
    return true;
}

void DAbstractCommand::commandSetReply(const QVariantMap& reply)
{
    thinHost.results = reply;
}

void DAbstractCommand::commandFinish(bool& ok)
{
    Q_UNUSED(ok)
}
