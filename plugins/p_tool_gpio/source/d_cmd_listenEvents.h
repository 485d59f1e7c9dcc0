#pragma once

#include <plugin_management/d_abstract_command.h>

#include <QMap>

/// The command "startListening": watches one channel and reports each reading, or whether it made the event
/// of an edge mode, until it is stopped.
class DCmdListenEvents : public DAbstractCommand
{
    Q_OBJECT
    Q_DISABLE_COPY(DCmdListenEvents)

public:
    DCmdListenEvents(const QVariantMap& parameters, QObject* parent);
    explicit DCmdListenEvents(QObject* parent);

    /// Sends the recurring request; false for a missing channel.
    bool commandExecute() override;
    /// Stops the recurring request. The command always finishes with success, whatever ok says.
    void finishTheCommand(bool& ok) override;
    QSharedPointer<ICommand> createCommand(const QVariantMap& parameters) override;

protected:
    /// True when reading makes the event of the edge mode; without one, when it differs from the reading
    /// before.
    bool isEventDetected(const int& reading);

private:
    bool onEdgeReply(quint64 instructionId, const QVariantMap& reply);
    bool onValueReply(quint64 instructionId, const QVariantMap& reply);

    QMap<QString, int> m_edgeModes;
    quint64 m_instructionId = 0;
    qint32 m_edgeMode = 0;
    quint16 m_lastValueMark = 0;
};
