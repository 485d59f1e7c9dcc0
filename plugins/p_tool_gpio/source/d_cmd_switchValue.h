#pragma once

#include <plugin_management/d_abstract_command.h>

/// The command "switchValue": reads an output channel and writes the inverse.
class DCmdSwitchValue : public DAbstractCommand
{
    Q_OBJECT
    Q_DISABLE_COPY(DCmdSwitchValue)

public:
    DCmdSwitchValue(const QVariantMap& parameters, QObject* parent);
    explicit DCmdSwitchValue(QObject* parent);

    /// Sends the read request; false for a missing channel or one that is no output.
    bool commandExecute() override;
    void finishTheCommand(bool& ok) override;
    QSharedPointer<ICommand> createCommand(const QVariantMap& parameters) override;

protected:
    /// Writes value to the channel. The switch itself does not use it: its write follows from the reply read.
    void sendValue(const quint16& value);

private:
    bool onReadReply(quint64 instructionId, const QVariantMap& reply);
    bool onWriteReply(quint64 instructionId, const QVariantMap& reply);

    QString m_deviceChannel;
};
