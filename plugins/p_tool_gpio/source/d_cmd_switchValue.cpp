#include "d_cmd_switchValue.h"

#include "command_support.h"
#include "error_report.h"

namespace {
constexpr auto c_source = "plugins/p_tool_gpio/source/d_cmd_switchValue";
}

using namespace command_support;

DCmdSwitchValue::DCmdSwitchValue(const QVariantMap& parameters, QObject* parent)
    : DAbstractCommand(QStringLiteral("switchValue"), parameters, parent)
{
    setDescription(QStringLiteral("Set the value of a GPIO pin"));
    declareAParameter(QStringLiteral("channel"), QStringLiteral("strg"), QStringLiteral("Channel"),
                      QVariant());
    declareAResult(QStringLiteral("doneOk"), QStringLiteral("bool"), QStringLiteral("Job done"),
                   QVariant(false));
}

DCmdSwitchValue::DCmdSwitchValue(QObject* parent)
    : DCmdSwitchValue(QVariantMap(), parent)
{}

bool DCmdSwitchValue::commandExecute()
{
    if (!DAbstractCommand::commandExecute()) {
        return false;
    }
    const QString toolChannel = getParameterValue(QStringLiteral("channel"), QVariant()).toString();
    if (toolChannel.isEmpty()) {
        errorReport(this, c_source, __LINE__) << c_channelNotManaged;
        return false;
    }
    const QVariant direction =
        getInfoFromChannel(toolChannel, QStringLiteral("direction"), QMetaType::QString, QVariant());
    if (!isOutput(direction)) {
        errorReport(this, c_source, __LINE__) << c_notAnOutput;
        return false;
    }
    m_deviceChannel = getLinkedChannel(toolChannel);
    addInstruction(deviceTarget(), QStringLiteral("getValue"), {{QStringLiteral("channel"), m_deviceChannel}},
                   c_replyTimeoutMs, ReplyDelegate(this, &DCmdSwitchValue::onReadReply));
    return true;
}

void DCmdSwitchValue::finishTheCommand(bool& ok)
{
    commandFinish(ok);
}

QSharedPointer<ICommand> DCmdSwitchValue::createCommand(const QVariantMap& parameters)
{
    return workingInstance<DCmdSwitchValue>(parameters, parent());
}

void DCmdSwitchValue::sendValue(const quint16& value)
{
    addInstruction(deviceTarget(), QStringLiteral("setValues"), valueArguments(m_deviceChannel, value),
                   c_replyTimeoutMs, ReplyDelegate(this, &DCmdSwitchValue::onWriteReply));
}

bool DCmdSwitchValue::onReadReply(quint64 instructionId, const QVariantMap& reply)
{
    Q_UNUSED(instructionId)
    const QString key = QStringLiteral("value");
    if (!reply.contains(key)) {
        errorReport(this, c_source, __LINE__) << c_invalidReplyFormat;
        return false;
    }
    const quint16 inverse = reply.value(key).toBool() ? 0 : 1;
    addInstruction(deviceTarget(), QStringLiteral("setValues"), valueArguments(m_deviceChannel, inverse),
                   c_replyTimeoutMs, ReplyDelegate(this, &DCmdSwitchValue::onWriteReply));
    return true;
}

bool DCmdSwitchValue::onWriteReply(quint64 instructionId, const QVariantMap& reply)
{
    Q_UNUSED(reply)
    return instructionId != 0 && commandUpdateResult(QStringLiteral("doneOk"), QVariant(true));
}
