#pragma once

#include <plugin_management/fast_delegate.h>

#include <QSharedPointer>
#include <QString>
#include <QVariant>

class QObject;

/// What the host sees of a command, prototype or working instance.
class ICommand
{
public:
    /// Receives a reply: the identifier of its instruction and the reply itself; answers whether the reply
    /// was accepted.
    using ReplyDelegate = fastdelegate::FastDelegate2<quint64, const QVariantMap&, bool>;

    /// Binds the command to the order that runs it (a DOrder), or to none.
    virtual void linkWithItsOrder(QObject* order) = 0;
    virtual QString commandName() const = 0;
    /// Name under which the command is stopped; empty when it cannot be.
    virtual QString stopCommandName() const = 0;
    /// Identifier of the linked order; 0 without one.
    virtual quint64 getOrderId() const = 0;
    /// Order that the invocation itself refers to with its argument "orderId"; 0 without one.
    virtual quint64 getParameterOrderId() const = 0;
    /// True while a request of the command recurs until it is stopped.
    virtual bool isRecurrent() const = 0;
    /// True while the command is linked with an order that has not ended.
    virtual bool isValid() const = 0;
    /// The one-line description.
    virtual QString description() const = 0;
    /// The description with a line for each parameter and result.
    virtual QString fullDescription() const = 0;
    /// The arguments of this invocation.
    virtual QVariantMap commandArguments() const = 0;
    /// Starts the work; false when it cannot be done.
    virtual bool commandExecute() = 0;
    /// Hands a reply to the delegate of its instruction and returns the delegate's answer; false for an
    /// instruction that is not pending.
    virtual bool setReply(quint64 instructionId, const QVariantMap& reply) = 0;
    /// Ends the command with the outcome ok.
    virtual void finishTheCommand(bool& ok) = 0;
    /// Emitted when the command has ended with the outcome ok.
    virtual void sigCommandFinished(bool ok) = 0;
    /// Sends one request to target; see DAbstractCommand.
    virtual quint64 addInstruction(const QString& target, const QString& instruction,
                                   const QVariantMap& arguments, int timeoutMs, ReplyDelegate onReply) = 0;
    /// Makes a working instance of the same class with these arguments.
    virtual QSharedPointer<ICommand> createCommand(const QVariantMap& parameters) = 0;

    virtual ~ICommand() = default;
};
