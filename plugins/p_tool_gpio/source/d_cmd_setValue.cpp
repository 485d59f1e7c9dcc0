#include "d_cmd_setValue.h"

#include "command_support.h"
#include "error_report.h"

#include <utilities/d_timer.h>

#include <limits>

namespace {

constexpr auto c_source = "plugins/p_tool_gpio/source/d_cmd_setValue";

enum EnState
{
    CeStNone = 0,
    CeStOn = 1,
    CeStOff = 2,
    CeStBlink = 3,
    CeStPulse = 4,
    _CeStNbr = 5, // NOLINT(clang-diagnostic-reserved-identifier): a count, named as all are
};

constexpr int c_steadyOnDuration = 65535;

// Built when the library is loaded, and read-only then: clazy:excludeall=non-pod-global-static

/// The states by their names; every instance shares the one map.
const QMap<QString, int> c_states = {
    {QString(), CeStNone},
    {QStringLiteral("ON"), CeStOn},
    {QStringLiteral("OFF"), CeStOff},
    {QStringLiteral("BLINK"), CeStBlink},
    {QStringLiteral("PULSE"), CeStPulse},
};

/// A width in milliseconds truncated toward zero and cut to its low 16 bits. A width that no 32-bit integer
/// can hold counts as the most negative one, whose low 16 bits are 0.
int requestWidth(float width)
{
    constexpr float limit = 2147483648.0F;
    const bool holds = width >= -limit && width < limit;
    const int whole = holds ? static_cast<int>(width) : std::numeric_limits<int>::min();
    return static_cast<quint16>(static_cast<quint32>(whole) & 0xFFFFU);
}

} // namespace

using namespace command_support;

DCmdSetValue::DCmdSetValue(const QVariantMap& parameters, QObject* parent)
    : DAbstractCommand(QStringLiteral("setValue"), QStringLiteral("stopTheCommand"), parameters, parent)
    , m_states(c_states)
{
    setDescription(QStringLiteral("Set the value of a GPIO pin"));
    declareAParameter(QStringLiteral("channel"), QStringLiteral("strg"), QStringLiteral("Channel"),
                      QVariant());
    declareAParameter(QStringLiteral("value"), QStringLiteral("ui16"), QStringLiteral("Value"), QVariant(1));
    declareAParameter(QStringLiteral("state"), QStringLiteral("strg"),
                      QStringLiteral("ON, OFF, PULSE or BLINK"), emptyText());
    declareAParameter(QStringLiteral("duration"), QStringLiteral("int"), QStringLiteral("Cycle duration"),
                      QVariant(1000));
    declareAParameter(QStringLiteral("dutyCycle"), QStringLiteral("int"), QStringLiteral("Duty cycle in %"),
                      QVariant(100));
    declareAResult(QStringLiteral("doneOk"), QStringLiteral("bool"), QStringLiteral("Job done"),
                   QVariant(false));
}

DCmdSetValue::DCmdSetValue(QObject* parent)
    : DCmdSetValue(QVariantMap(), parent)
{}

bool DCmdSetValue::commandExecute()
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
    m_value = static_cast<quint16>(getParameterValue(QStringLiteral("value"), QVariant()).toUInt());
    m_state = m_states.value(getParameterValue(QStringLiteral("state"), QVariant()).toString(), CeStNone);
    m_dutyCycle = static_cast<float>(getParameterValue(QStringLiteral("dutyCycle"), QVariant()).toInt());
    m_duration = getParameterValue(QStringLiteral("duration"), QVariant()).toInt();
    switch (m_state) {
    case CeStBlink:
        sendSetRequest(m_value, m_dutyCycle / 100.0F, true);
        break;
    case CeStPulse:
        startPulse();
        break;
    case CeStOn:
        m_duration = c_steadyOnDuration;
        sendSetRequest(1, 1.0F, true);
        break;
    case CeStOff:
        m_duration = 0;
        sendSetRequest(0, 0.0F, true);
        break;
    default:
        break;
    }
    return true;
}

void DCmdSetValue::finishTheCommand(bool& ok)
{
    stopPulseTimer();
    commandFinish(ok);
}

QSharedPointer<ICommand> DCmdSetValue::createCommand(const QVariantMap& parameters)
{
    return workingInstance<DCmdSetValue>(parameters, parent());
}

void DCmdSetValue::startPulse()
{
    m_pulseTimer = new DTimer(this);
    m_pulseTimer->setInterval(m_duration);
    m_pulseTimer->setSingleShot(true);
    connect(m_pulseTimer, &DTimer::timeout, this, &DCmdSetValue::onPulseElapsed);
    sendSetRequest(1, 1.0F, false);
    m_pulseTimer->start();
}

void DCmdSetValue::sendSetRequest(const quint16& value, const float& fraction, bool useStateInstruction)
{
    const auto duration = static_cast<float>(m_duration);
    const int onWidth = value != 0 ? requestWidth(duration * fraction) : 0;
    const int offWidth = value != 0 ? requestWidth((1.0F - fraction) * duration) : 0;
    const int writtenValue = fraction > 0.0F ? value : 0;
    const QVariantMap arguments = {
        {QStringLiteral("channel"), m_deviceChannel}, {QStringLiteral("pulseOnWidth"), onWidth},
        {QStringLiteral("pulseOffWidth"), offWidth},  {QStringLiteral("values"), writtenValue},
        {QStringLiteral("interval"), m_duration},     {QStringLiteral("dutyCycle"), fraction},
    };
    const bool blinks = useStateInstruction && m_state == CeStBlink;
    addInstruction(deviceTarget(), blinks ? QStringLiteral("setBlink") : QStringLiteral("setValues"),
                   arguments, c_replyTimeoutMs, ReplyDelegate(this, &DCmdSetValue::onSetReply));
}

void DCmdSetValue::stopPulseTimer()
{
    if (m_pulseTimer == nullptr) {
        return;
    }
    if (m_pulseTimer->isActive()) {
        m_pulseTimer->stop();
    }
    disconnect(m_pulseTimer, &DTimer::timeout, nullptr, nullptr);
}

void DCmdSetValue::onPulseElapsed()
{
    sendSetRequest(0, 0.0F, true);
    stopPulseTimer();
    commandUpdateResult(QStringLiteral("doneOk"), QVariant(true));
}

bool DCmdSetValue::onSetReply(quint64 instructionId, const QVariantMap& reply)
{
    Q_UNUSED(reply)
    if (instructionId == 0) {
        return false;
    }
    // A pulse reports itself when it ends; the replies to both of its requests are accepted without effect.
    return m_state == CeStPulse || commandUpdateResult(QStringLiteral("doneOk"), QVariant(true));
}
