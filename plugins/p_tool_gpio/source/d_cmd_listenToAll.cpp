#include "d_cmd_listenToAll.h"

#include "command_support.h"
#include "error_report.h"

namespace {
constexpr auto c_source = "plugins/p_tool_gpio/source/d_cmd_listenToAll";
}

using namespace command_support;

DCmdListenToAll::DCmdListenToAll(const QVariantMap& parameters, QObject* parent)
    : DAbstractCommand(QStringLiteral("listenToAll"), QStringLiteral("stopListening"), parameters, parent)
{
    setDescription(QStringLiteral("Listen events from the gpio channel"));
    declareAResult(QStringLiteral("value"), QStringLiteral("vart"),
                   QStringLiteral("All gpio value in decimal"), QVariant());
}

DCmdListenToAll::DCmdListenToAll(QObject* parent)
    : DCmdListenToAll(QVariantMap(), parent)
{}

bool DCmdListenToAll::commandExecute()
{
    if (!DAbstractCommand::commandExecute()) {
        return false;
    }
    m_instructionId =
        addInstruction(deviceTarget(), QStringLiteral("listenToAll"), QVariantMap(), c_replyTimeoutMs,
                       ReplyDelegate(this, &DCmdListenToAll::onListenToAllReply));
    return true;
}

void DCmdListenToAll::finishTheCommand(bool& ok)
{
    Q_UNUSED(ok)
    if (m_instructionId != 0) {
        stopTheInstruction(m_instructionId);
    }
    bool stopped = true;
    commandFinish(stopped);
}

QSharedPointer<ICommand> DCmdListenToAll::createCommand(const QVariantMap& parameters)
{
    return workingInstance<DCmdListenToAll>(parameters, parent());
}

bool DCmdListenToAll::onListenToAllReply(quint64 instructionId, const QVariantMap& reply)
{
    Q_UNUSED(instructionId)
    const QString key = QStringLiteral("value");
    if (!reply.contains(key)) {
        errorReport(this, c_source, __LINE__) << c_replyWithoutValues;
        return false;
    }
    commandUpdateResult(key, reply.value(key));
    return true;
}
