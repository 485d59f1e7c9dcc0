#include "d_cmd_switchOn.h"

DCmdSwitchOn::DCmdSwitchOn(QObject* parent, const QVariantMap& parameters)
    : DAbstractCommand(QStringLiteral("switchOn"), parameters, parent)
{
    setDescription(QStringLiteral("Switch a channel on"));
    declareAParameter(QStringLiteral("channel"), QStringLiteral("strg"), QStringLiteral("Channel"),
                      QVariant());
    declareAResult(QStringLiteral("doneOk"), QStringLiteral("bool"), QStringLiteral("Job done"), false);
}

bool DCmdSwitchOn::commandExecute()
{
    if (!DAbstractCommand::commandExecute()) {
        return false;
    }
    constexpr int timeoutMs = 1000;
    const QString channel = getParameterValue(QStringLiteral("channel"), QVariant()).toString();
    addInstruction(QStringLiteral("device"), QStringLiteral("setValues"),
                   {{QStringLiteral("channel"), getLinkedChannel(channel)}, {QStringLiteral("values"), 1}},
                   timeoutMs, ReplyDelegate(this, &DCmdSwitchOn::onReply));
    return true;
}

QSharedPointer<ICommand> DCmdSwitchOn::createCommand(const QVariantMap& parameters)
{
    return QSharedPointer<DCmdSwitchOn>(new DCmdSwitchOn(parent(), parameters));
}

bool DCmdSwitchOn::onReply(quint64 instructionId, const QVariantMap& reply)
{
    Q_UNUSED(instructionId)
    Q_UNUSED(reply)
    return commandUpdateResult(QStringLiteral("doneOk"), true);
}
