#pragma once

#include <plugin_management/d_abstract_command.h>

/// The command "listenToAll": passes every reading of all channels on, until it is stopped.
class DCmdListenToAll : public DAbstractCommand
{
    Q_OBJECT
    Q_DISABLE_COPY(DCmdListenToAll)

public:
    DCmdListenToAll(const QVariantMap& parameters, QObject* parent);
    explicit DCmdListenToAll(QObject* parent);

    /// Sends the recurring request.
    bool commandExecute() override;
    /// Stops the recurring request. The command always finishes with success, whatever ok says.
    void finishTheCommand(bool& ok) override;
    QSharedPointer<ICommand> createCommand(const QVariantMap& parameters) override;

private:
    bool onListenToAllReply(quint64 instructionId, const QVariantMap& reply);

    quint64 m_instructionId = 0;
};
