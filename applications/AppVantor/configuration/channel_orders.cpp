#include "channel_orders.h"

Invocation settingState(const DToolChannel& channel, const QString& state, QVariantMap arguments)
{
    arguments.insert(QStringLiteral("channel"), channel.id);
    arguments.insert(QStringLiteral("state"), state);
    return {QStringLiteral("setValue"), arguments};
}

/// A cycle that is on all the time is steady: the one way to a level that is not 1.
Invocation settingLevel(const DToolChannel& channel, int level)
{
    if (level > 1) {
        return settingState(channel, QStringLiteral("BLINK"),
                            {{QStringLiteral("value"), level}, {QStringLiteral("dutyCycle"), 100}});
    }
    return settingState(channel, level == 1 ? QStringLiteral("ON") : QStringLiteral("OFF"));
}

bool drivesLine(const DToolChannel& channel)
{
    return !channel.link.isEmpty() &&
           channel.items.value(QStringLiteral("direction")) == QLatin1String("out");
}

std::vector<Invocation> switchingOff(const QVector<DToolChannel>& channels)
{
    std::vector<Invocation> orders;
    for (const DToolChannel& channel : channels) {
        if (drivesLine(channel)) {
            orders.push_back(settingState(channel, QStringLiteral("OFF")));
        }
    }
    return orders;
}

QStringList knownWords(const QString& parameter)
{
    if (parameter == QLatin1String("state")) {
        return {QStringLiteral("ON"), QStringLiteral("OFF"), QStringLiteral("BLINK"),
                QStringLiteral("PULSE")};
    }
    if (parameter == QLatin1String("edge")) {
        return {QStringLiteral("RE"), QStringLiteral("FE"), QStringLiteral("HL"), QStringLiteral("LL")};
    }
    return {};
}

bool countsWith(const QString& state, const QString& parameter)
{
    const bool blinks = state == QLatin1String("BLINK");
    if (!state.isEmpty() && !knownWords(QStringLiteral("state")).contains(state)) {
        return true;
    }
    if (parameter == QLatin1String("value") || parameter == QLatin1String("dutyCycle")) {
        return blinks;
    }
    return parameter != QLatin1String("duration") || blinks || state == QLatin1String("PULSE");
}
