#pragma once

#include <plugin_management/d_abstract_command.h>

/// The command "switchOn": drives one channel to 1.
class DCmdSwitchOn : public DAbstractCommand
{
    Q_OBJECT
    Q_DISABLE_COPY(DCmdSwitchOn)

public:
    /// Without parameters: the prototype, which tells what the command is.
    explicit DCmdSwitchOn(QObject* parent, const QVariantMap& parameters = QVariantMap());

    bool commandExecute() override;
    QSharedPointer<ICommand> createCommand(const QVariantMap& parameters) override;

private:
    bool onReply(quint64 instructionId, const QVariantMap& reply);
};
