#pragma once

#include <plugin_management/fast_delegate.h>

#include <QSharedPointer>
#include <QString>
#include <QVariant>

class QObject;

/// What the host sees of a command.
class ICommand
{
public:
    virtual ~ICommand() = default;

    virtual void linkWithItsOrder(QObject* order) = 0;
    virtual QString commandName() const = 0;
    virtual QString stopCommandName() const = 0;
    virtual quint64 getOrderId() const = 0;
    virtual quint64 getParameterOrderId() const = 0;
    virtual bool isRecurrent() const = 0;
    virtual bool isValid() const = 0;
    virtual QString description() const = 0;
    virtual QString fullDescription() const = 0;
    virtual QVariantMap commandArguments() const = 0;
    virtual bool commandExecute() = 0;
    virtual bool setReply(quint64 instructionId, const QVariantMap& reply) = 0;
    virtual void finishTheCommand(bool& ok) = 0;
    virtual void sigCommandFinished(bool ok) = 0;
    virtual quint64
    addInstruction(const QString& target, const QString& instruction, const QVariantMap& arguments,
                   int timeoutMs, fastdelegate::FastDelegate2<quint64, const QVariantMap&, bool> onReply) = 0;
    virtual QSharedPointer<ICommand> createCommand(const QVariantMap& parameters) = 0;
};
