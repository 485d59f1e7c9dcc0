#include "d_cmd_initGpio.h"

#include "command_support.h"

using namespace command_support;

DCmdInitGpio::DCmdInitGpio(const QVariantMap& parameters, QObject* parent)
    : DAbstractCommand(QStringLiteral("init"), parameters, parent)
{
    setDescription(QStringLiteral("Set initia values of a GPIO pin"));
    declareAResult(QStringLiteral("doneOk"), QStringLiteral("bool"), QStringLiteral("Job done"),
                   QVariant(false));
}

DCmdInitGpio::DCmdInitGpio(QObject* parent)
    : DCmdInitGpio(QVariantMap(), parent)
{}

bool DCmdInitGpio::commandExecute()
{
    const bool accepted = DAbstractCommand::commandExecute();
    commandUpdateResult(QStringLiteral("doneOk"), QVariant(true));
    const QVariant section = getParametersSection(QStringLiteral("channels"));
    if (section.canConvert(QMetaType::QVariantList)) {
        const QVariantList channels = section.toList();
        m_pendingReplies = channels.size();
        for (const QVariant& channel : channels) {
            // An output is initialised no more than an input, as yet.
            static_cast<void>(isOutput(channel.toMap().value(QStringLiteral("direction"))));
        }
    }
    return accepted;
}

QSharedPointer<ICommand> DCmdInitGpio::createCommand(const QVariantMap& parameters)
{
    return workingInstance<DCmdInitGpio>(parameters, parent());
}

void DCmdInitGpio::sendChannelValues(const quint16& value, const QString& deviceChannel, bool expectReply)
{
    const ReplyDelegate onReply =
        expectReply ? ReplyDelegate(this, &DCmdInitGpio::onSetValuesReply) : ReplyDelegate();
    addInstruction(deviceTarget(), QStringLiteral("setValues"), valueArguments(deviceChannel, value),
                   c_replyTimeoutMs, onReply);
}

bool DCmdInitGpio::onSetValuesReply(quint64 instructionId, const QVariantMap& reply)
{
    Q_UNUSED(reply)
    if (instructionId != 0) {
        --m_pendingReplies;
    }
    if (m_pendingReplies != 0) {
        return instructionId != 0;
    }
    return commandUpdateResult(QStringLiteral("doneOk"), QVariant(true));
}
