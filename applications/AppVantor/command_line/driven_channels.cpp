#include "driven_channels.h"

#include <plugin_management/d_tool.h>

namespace {

bool isSetting(const Invocation& invocation)
{
    return invocation.command == QLatin1String("setValue");
}

QString stateOf(const Invocation& invocation)
{
    return invocation.arguments.value(QStringLiteral("state")).toString();
}

/// A cycle that is on or off all the time is steady.
bool blinks(const Invocation& invocation)
{
    constexpr qint64 usualDuration = 1000;
    constexpr qint64 whole = 100;
    const QVariantMap& arguments = invocation.arguments;
    const qint64 duration = arguments.value(QStringLiteral("duration"), usualDuration).toLongLong();
    const qint64 percent = arguments.value(QStringLiteral("dutyCycle"), whole).toLongLong();
    return stateOf(invocation) == QLatin1String("BLINK") && duration * percent >= whole &&
           duration * (whole - percent) >= whole && arguments.value(QStringLiteral("value"), 1).toInt() != 0;
}

} // namespace

DrivenChannels::DrivenChannels(const DTool& tool)
    : m_tool(tool)
{}

void DrivenChannels::note(const Invocation& invocation)
{
    if (!isSetting(invocation) && invocation.command != QLatin1String("switchValue")) {
        return;
    }
    const QString channel = channelOf(invocation);
    const QString line = m_tool.getLinkedChannel(channel);
    m_blinking.remove(line);
    if (isSetting(invocation) && blinks(invocation)) {
        m_blinking.insert(line, channel);
    }
}

bool DrivenChannels::isPulse(const Invocation& invocation)
{
    return isSetting(invocation) && stateOf(invocation) == QLatin1String("PULSE");
}

QString DrivenChannels::channelOf(const Invocation& invocation)
{
    return invocation.arguments.value(QStringLiteral("channel")).toString();
}
