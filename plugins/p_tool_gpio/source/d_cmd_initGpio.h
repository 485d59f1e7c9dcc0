#pragma once

#include <plugin_management/d_abstract_command.h>

/// The command "init": receives the section "channels", counts its entries and reports that it is done. It
/// sends nothing to the device.
class DCmdInitGpio : public DAbstractCommand
{
    Q_OBJECT
    Q_DISABLE_COPY(DCmdInitGpio)

public:
    DCmdInitGpio(const QVariantMap& parameters, QObject* parent);
    explicit DCmdInitGpio(QObject* parent);

    /// Reports "doneOk" and counts the entries; answers what the base answers, which stops nothing.
    bool commandExecute() override;
    QSharedPointer<ICommand> createCommand(const QVariantMap& parameters) override;

protected:
    /// Writes value to deviceChannel; with expectReply the reply is counted. Nothing calls it.
    void sendChannelValues(const quint16& value, const QString& deviceChannel, bool expectReply);
    /// Counts a reply down; the last one reports "doneOk".
    bool onSetValuesReply(quint64 instructionId, const QVariantMap& reply);

    /// Number of replies that are still awaited.
    qint32 m_pendingReplies = 0;
};
