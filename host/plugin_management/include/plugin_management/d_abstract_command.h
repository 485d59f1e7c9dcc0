#pragma once

#include <plugin_management/d_command_description.h>
#include <plugin_management/i_command.h>
#include <plugin_management/plugin_management_global.h>

#include <utilities/d_object.h>

#include <memory>

/// Base of all commands: keeps the declarations and the arguments, and speaks with the order that runs the
/// command. Without a linked order a command can send nothing and store nothing.
class PLUGIN_MANAGEMENT_EXPORT DAbstractCommand : public DObject, public ICommand
{
    Q_OBJECT
    Q_DISABLE_COPY(DAbstractCommand)

public:
    /// Makes a command without a stop command, with the arguments of its invocation.
    DAbstractCommand(const QString& name, const QVariantMap& parameters, QObject* parent);
    /// Makes a command that is stopped under the name stopCommandName.
    DAbstractCommand(const QString& name, const QString& stopCommandName, const QVariantMap& parameters,
                     QObject* parent);
    ~DAbstractCommand() override;

    // The slots of the virtual table, in their fixed order. sigCommandFinished is a signal: it stands among
    // them, since its slot is part of the table. Its virtual comes from ICommand, so that moc, which warns of
    // signals declared virtual, finds nothing to say.
    void linkWithItsOrder(QObject* order) override;
    QString commandName() const override;
    QString stopCommandName() const override;
    quint64 getOrderId() const override;
    quint64 getParameterOrderId() const override;
    bool isRecurrent() const override;
    bool isValid() const override;
    QString description() const override;
    QString fullDescription() const override;
    QVariantMap commandArguments() const override;
    /// Answers isValid(); every override calls it first.
    bool commandExecute() override;
    bool setReply(quint64 instructionId, const QVariantMap& reply) override;
    /// Ends the command with commandFinish(ok).
    void finishTheCommand(bool& ok) override;
Q_SIGNALS:
    void sigCommandFinished(bool ok) override;

public:
    /// Sends the request instruction with arguments to target ("device") and returns its identifier, 1 or
    /// more; 0 when the command has no running order. Each reply goes to onReply from the event loop. The
    /// order fails when no reply comes within timeoutMs milliseconds (0: no limit).
    quint64 addInstruction(const QString& target, const QString& instruction, const QVariantMap& arguments,
                           int timeoutMs, ReplyDelegate onReply) override;
    QSharedPointer<ICommand> createCommand(const QVariantMap& parameters) override = 0;

    /// The command as it is declared.
    const DCommandDescription& declaration() const;

    /// Sets the one-line description.
    void setDescription(const QString& description);
    /// Declares a parameter: its name, type tag ("strg", "ui16", "int", "bool" or "vart"), description and
    /// default (an invalid variant for none). Parameters are listed in the order of their declaration.
    void declareAParameter(const QString& name, const QString& typeTag, const QString& description,
                           const QVariant& defaultValue);
    /// Declares a result with its initial value; otherwise as declareAParameter.
    void declareAResult(const QString& name, const QString& typeTag, const QString& description,
                        const QVariant& defaultValue);

    /// The argument name of this invocation; without it fallback when that is valid, else the declared
    /// default.
    QVariant getParameterValue(const QString& name, const QVariant& fallback) const;
    /// The argument name of this invocation as it was given, of whatever type; an invalid variant without it.
    QVariant getParametersSection(const QString& name);
    /// Device channel that toolChannel is linked to; empty when it is linked to none.
    QString getLinkedChannel(const QString& toolChannel);
    /// Item infoKey of toolChannel's configuration, converted to type; fallback when there is no such channel
    /// or item, or it cannot be converted.
    QVariant getInfoFromChannel(const QString& toolChannel, const QString& infoKey, QMetaType::Type type,
                                const QVariant& fallback);

    /// Ends the recurring request instructionId; no reply of it is delivered afterwards.
    void stopTheInstruction(quint64 instructionId);
    /// Stores the declared result name; false when no such result is declared or no order runs.
    bool commandUpdateResult(const QString& name, const QVariant& value);
    /// Passes reply on as an event of the command, and each of its keys that is a declared result as that
    /// result.
    void commandSetReply(const QVariantMap& reply);
    /// The framework's finishing work: emits sigCommandFinished(ok), once in the command's life.
    void commandFinish(bool& ok);

private:
    friend class DOrder;
    struct Private;

    /// The instruction is over: its delegate goes.
    void forgetInstruction(quint64 instructionId);

    std::unique_ptr<Private> d;
};
