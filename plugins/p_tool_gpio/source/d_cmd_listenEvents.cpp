#include "d_cmd_listenEvents.h"

#include "command_support.h"
#include "error_report.h"

namespace {

constexpr auto c_source = "plugins/p_tool_gpio/source/d_cmd_listenEvents";
constexpr auto c_wrongSize = "ERROR: reply does not have the correct size";
constexpr auto c_wrongFormat = "ERROR: reply does not have the correct format";

enum EnEdgeMode
{
    CeEmNone = 0,
    CeEmHighLevel = 1,
    CeEmLowLevel = 2,
    CeEmRisingEdge = 3,
    CeEmFallingEdge = 4,
    _CeEmNbr = 5, // NOLINT(clang-diagnostic-reserved-identifier): a count, named as all are
};

// Built when the library is loaded, and read-only then: clazy:excludeall=non-pod-global-static

/// The edge modes by their names; every instance shares the one map.
const QMap<QString, int> c_edgeModes = {
    {QStringLiteral("HL"), CeEmHighLevel},
    {QStringLiteral("LL"), CeEmLowLevel},
    {QStringLiteral("RE"), CeEmRisingEdge},
    {QStringLiteral("FE"), CeEmFallingEdge},
};

} // namespace

using namespace command_support;

DCmdListenEvents::DCmdListenEvents(const QVariantMap& parameters, QObject* parent)
    : DAbstractCommand(QStringLiteral("startListening"), QStringLiteral("stopListening"), parameters, parent)
    , m_edgeModes(c_edgeModes)
{
    setDescription(QStringLiteral("Listen events from the gpio channel"));
    declareAParameter(QStringLiteral("channel"), QStringLiteral("strg"), QStringLiteral("Channel"),
                      QVariant());
    declareAParameter(
        QStringLiteral("edge"), QStringLiteral("strg"),
        QStringLiteral("Edge detection mode: RE: Rising Edge, FE: falling Edge, HL: hight level, "
                       "LL: low level, default: d\u00E9activated"),
        emptyText());
    declareAResult(QStringLiteral("value"), QStringLiteral("ui16"), QStringLiteral("Value"), QVariant());
    declareAResult(QStringLiteral("lastValue"), QStringLiteral("ui16"), QStringLiteral("Last value"),
                   QVariant());
}

DCmdListenEvents::DCmdListenEvents(QObject* parent)
    : DCmdListenEvents(QVariantMap(), parent)
{}

bool DCmdListenEvents::commandExecute()
{
    if (!DAbstractCommand::commandExecute()) {
        return false;
    }
    const QString toolChannel = getParameterValue(QStringLiteral("channel"), QVariant()).toString();
    if (toolChannel.isEmpty()) {
        errorReport(this, c_source, __LINE__) << c_channelNotManaged;
        return false;
    }
    const QString edge = getParameterValue(QStringLiteral("edge"), QVariant()).toString();
    m_edgeMode = m_edgeModes.value(edge, CeEmNone);
    const QString deviceChannel = getLinkedChannel(toolChannel);
    const ReplyDelegate onReply = m_edgeMode != CeEmNone
                                      ? ReplyDelegate(this, &DCmdListenEvents::onEdgeReply)
                                      : ReplyDelegate(this, &DCmdListenEvents::onValueReply);
    m_instructionId = addInstruction(deviceTarget(), QStringLiteral("listenEvents"),
                                     {{QStringLiteral("channel"), deviceChannel}}, c_replyTimeoutMs, onReply);
    return true;
}

void DCmdListenEvents::finishTheCommand(bool& ok)
{
    Q_UNUSED(ok)
    if (m_instructionId != 0) {
        stopTheInstruction(m_instructionId);
    }
    bool stopped = true;
    commandFinish(stopped);
}

QSharedPointer<ICommand> DCmdListenEvents::createCommand(const QVariantMap& parameters)
{
    return workingInstance<DCmdListenEvents>(parameters, parent());
}

/// The mark is the reading before plus one, so that 0 says that there was none; its sums are 64 bits wide,
/// for readings at the ends of int.
bool DCmdListenEvents::isEventDetected(const int& reading)
{
    const qint64 mark = m_lastValueMark;
    const qint64 nextMark = qint64{reading} + 1;
    bool detected = false;
    switch (m_edgeMode) {
    case CeEmHighLevel:
        detected = reading == 1;
        break;
    case CeEmLowLevel:
        detected = reading == 0;
        break;
    case CeEmRisingEdge:
        detected = mark != 0 && reading >= mark;
        break;
    case CeEmFallingEdge:
        detected = mark != 0 && mark > nextMark;
        break;
    default:
        detected = mark != nextMark;
        break;
    }
    m_lastValueMark = static_cast<quint16>(nextMark & 0xFFFF);
    return detected;
}

bool DCmdListenEvents::onEdgeReply(quint64 instructionId, const QVariantMap& reply)
{
    Q_UNUSED(instructionId)
    const auto values = reply.constFind(QStringLiteral("values"));
    if (values == reply.constEnd()) {
        errorReport(this, c_source, __LINE__) << c_replyWithoutValues;
        return false;
    }
    int reading = 0;
    if (values->type() == QVariant::List) {
        const QVariantList list = values->toList();
        if (list.size() != 1) {
            errorReport(this, c_source, __LINE__) << c_wrongSize;
            return false;
        }
        reading = list.first().toInt();
    } else if (values->canConvert(QMetaType::UInt)) {
        reading = static_cast<quint16>(values->toUInt());
    } else {
        errorReport(this, c_source, __LINE__) << c_wrongFormat;
        return false;
    }
    const bool detected = isEventDetected(reading);
    commandSetReply({{QStringLiteral("value"), detected}, {QStringLiteral("lastValue"), reading}});
    return true;
}

bool DCmdListenEvents::onValueReply(quint64 instructionId, const QVariantMap& reply)
{
    Q_UNUSED(instructionId)
    const auto values = reply.constFind(QStringLiteral("values"));
    if (values == reply.constEnd()) {
        errorReport(this, c_source, __LINE__) << c_replyWithoutValues;
        return false;
    }
    if (values->type() != QVariant::List) {
        errorReport(this, c_source, __LINE__) << c_wrongFormat;
        return false;
    }
    const QVariantList list = values->toList();
    if (list.size() != 1) {
        errorReport(this, c_source, __LINE__) << c_wrongSize;
        return false;
    }
    const int reading = static_cast<qint16>(static_cast<quint16>(list.first().toUInt()));
    commandSetReply({{QStringLiteral("value"), reading}, {QStringLiteral("lastValue"), reading}});
    return true;
}
