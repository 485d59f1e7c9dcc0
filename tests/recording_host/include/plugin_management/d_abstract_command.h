#pragma once

#include <plugin_management/i_command.h>

#include <utilities/d_object.h>

#include <memory>

struct CommandRecord;

/// Base of all commands, with as little open to others as a command's class needs. It writes down what the
/// command asks of it in its CommandRecord, and answers what the record says.
class Q_DECL_EXPORT DAbstractCommand : public DObject, public ICommand
{
    Q_OBJECT
    Q_DISABLE_COPY(DAbstractCommand)

protected:
    using Delegate = fastdelegate::FastDelegate2<quint64, const QVariantMap&, bool>;

    DAbstractCommand(const QString& name, const QVariantMap& parameters, QObject* parent);
    DAbstractCommand(const QString& name, const QString& stopCommandName, const QVariantMap& parameters,
                     QObject* parent);

public:
    ~DAbstractCommand() override;

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
    bool commandExecute() override;
    bool setReply(quint64 instructionId, const QVariantMap& reply) override;
    void finishTheCommand(bool& ok) override;
Q_SIGNALS:
    void sigCommandFinished(bool ok) override;

protected:
    quint64 addInstruction(const QString& target, const QString& instruction, const QVariantMap& arguments,
                           int timeoutMs, Delegate onReply) override;

public:
    QSharedPointer<ICommand> createCommand(const QVariantMap& parameters) override = 0;

protected:
    void setDescription(const QString& description);
    void declareAParameter(const QString& name, const QString& typeTag, const QString& description,
                           const QVariant& defaultValue);
    void declareAResult(const QString& name, const QString& typeTag, const QString& description,
                        const QVariant& defaultValue);
    QVariant getParameterValue(const QString& name, const QVariant& fallback) const;
    QVariant getParametersSection(const QString& name);
    QString getLinkedChannel(const QString& toolChannel);
    QVariant getInfoFromChannel(const QString& toolChannel, const QString& infoKey, QMetaType::Type type,
                                const QVariant& fallback);
    void stopTheInstruction(quint64 instructionId);
    bool commandUpdateResult(const QString& name, const QVariant& value);
    void commandSetReply(const QVariantMap& reply);
    void commandFinish(bool& ok);

private:
    friend CommandRecord& recordOf(const DAbstractCommand& command);

    std::unique_ptr<CommandRecord> m_record;
};
