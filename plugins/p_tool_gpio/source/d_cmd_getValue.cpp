#include "d_cmd_getValue.h"

#include "command_support.h"
#include "error_report.h"

namespace {
constexpr auto c_source = "plugins/p_tool_gpio/source/d_cmd_getValue";
}

using namespace command_support;

DCmdGetValue::DCmdGetValue(const QVariantMap& parameters, QObject* parent)
    : DAbstractCommand(QStringLiteral("getValue"), parameters, parent)
{
    setDescription(QStringLiteral("Get the value of a GPIO pin"));
    declareAParameter(QStringLiteral("channel"), QStringLiteral("strg"), QStringLiteral("Channel"),
                      QVariant());
    declareAResult(QStringLiteral("value"), QStringLiteral("ui16"), QStringLiteral("Value"), QVariant());
}

DCmdGetValue::DCmdGetValue(QObject* parent)
    : DCmdGetValue(QVariantMap(), parent)
{}

bool DCmdGetValue::commandExecute()
{
    if (!DAbstractCommand::commandExecute()) {
        return false;
    }
    const QString toolChannel = getParameterValue(QStringLiteral("channel"), QVariant()).toString();
    if (toolChannel.isEmpty()) {
        errorReport(this, c_source, __LINE__) << "ERROR: Tool channel is empty";
        return true;
    }
    const QString deviceChannel = getLinkedChannel(toolChannel);
    if (deviceChannel.isEmpty()) {
        errorReport(this, c_source, __LINE__)
            << "ERROR: Tool channel: " << toolChannel << " is not linked to device";
        return true;
    }
    addInstruction(deviceTarget(), QStringLiteral("getValue"), {{QStringLiteral("channel"), deviceChannel}},
                   c_replyTimeoutMs, ReplyDelegate(this, &DCmdGetValue::onGetReply));
    return true;
}

QSharedPointer<ICommand> DCmdGetValue::createCommand(const QVariantMap& parameters)
{
    return workingInstance<DCmdGetValue>(parameters, parent());
}

bool DCmdGetValue::onGetReply(quint64 instructionId, const QVariantMap& reply)
{
    Q_UNUSED(instructionId)
    const QString key = QStringLiteral("value");
    if (!reply.contains(key)) {
        errorReport(this, c_source, __LINE__) << c_invalidReplyFormat;
        return false;
    }
    const auto value = static_cast<quint16>(reply.value(key).toUInt());
    return commandUpdateResult(key, QVariant(static_cast<int>(value)));
}
