#pragma once

#include <plugin_management/d_abstract_command.h>

/// The command "getValue": reads the present value of one channel.
class DCmdGetValue : public DAbstractCommand
{
    Q_OBJECT
    Q_DISABLE_COPY(DCmdGetValue)

public:
    DCmdGetValue(const QVariantMap& parameters, QObject* parent);
    explicit DCmdGetValue(QObject* parent);

    /// Sends the request. A missing or unlinked channel is reported only: the answer is true all the same.
    bool commandExecute() override;
    QSharedPointer<ICommand> createCommand(const QVariantMap& parameters) override;

private:
    bool onGetReply(quint64 instructionId, const QVariantMap& reply);
};
