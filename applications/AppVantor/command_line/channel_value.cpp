#include "channel_value.h"

#include <process/did_you_mean.h>

#include <climits>
#include <optional>

namespace {

constexpr int c_highestLevel = 65535;
constexpr int c_longestCycleMs = 65535; // longer ones are cut on their way to the device

bool isAnalogue(const DToolChannel& channel)
{
    return channel.items.value(QStringLiteral("type")).toString().startsWith(QLatin1String("analog"));
}

std::optional<int> number(const QString& text, int least, int most)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    return ok && value >= least && value <= most ? std::optional<int>(value) : std::nullopt;
}

std::optional<int> levelOf(const DToolChannel& channel, const QString& text)
{
    if (text == QLatin1String("OFF")) {
        return 0;
    }
    if (isAnalogue(channel)) {
        return number(text, 0, c_highestLevel);
    }
    return text == QLatin1String("ON") ? 1 : number(text, 0, 1);
}

/// What is no level: a pulse or blinking.
std::optional<Invocation> readCourse(const DToolChannel& channel, const QStringList& parts)
{
    const QString duration = QStringLiteral("duration");
    if (parts.first() == QLatin1String("PULSE") && parts.size() == 2) {
        if (const auto milliseconds = number(parts.at(1), 1, INT_MAX)) {
            return settingState(channel, parts.first(), {{duration, *milliseconds}});
        }
    } else if (parts.first() == QLatin1String("BLINK") && parts.size() == 3) {
        const auto cycle = number(parts.at(1), 1, c_longestCycleMs);
        const auto percent = number(parts.at(2), 0, 100);
        if (cycle && percent) {
            return settingState(channel, parts.first(),
                                {{duration, *cycle}, {QStringLiteral("dutyCycle"), *percent}});
        }
    }
    return std::nullopt;
}

DWording unexpected(const DToolChannel& channel, const DWording& expected, const QString& found)
{
    return wording(R"(channel "%1": expected %2, found "%3")").arg(channel.id, expected, found);
}

DWording levels(const DToolChannel& channel)
{
    return isAnalogue(channel) ? wording("a number from 0 to %1 or OFF").arg(c_highestLevel)
                               : wording("ON or OFF");
}

} // namespace

const DToolChannel* findChannel(const QVector<DToolChannel>& channels, const QString& id, DWording* problem)
{
    QStringList known;
    for (const DToolChannel& channel : channels) {
        if (channel.id == id) {
            return &channel;
        }
        known.append(channel.id);
    }
    *problem = wording(R"(the tool has no channel "%1"%2)").arg(id, didYouMean(id, known));
    return nullptr;
}

QVector<DToolChannel> findChannels(const QVector<DToolChannel>& channels, const QStringList& ids,
                                   DWording* problem)
{
    QVector<DToolChannel> found;
    QStringList distinct = ids;
    distinct.removeDuplicates();
    for (const QString& id : distinct) {
        const DToolChannel* channel = findChannel(channels, id, problem);
        if (channel == nullptr) {
            return {};
        }
        found.append(*channel);
    }
    return found;
}

std::vector<Invocation> forEach(const QVector<DToolChannel>& channels, const QString& command)
{
    std::vector<Invocation> invocations;
    for (const DToolChannel& channel : channels) {
        invocations.push_back({command, {{QStringLiteral("channel"), channel.id}}});
    }
    return invocations;
}

QString levelText(const DToolChannel& channel, const QVariant& reading)
{
    const int level = reading.toInt();
    if (isAnalogue(channel) || level < 0 || level > 1) {
        return reading.toString();
    }
    return level == 1 ? QStringLiteral("ON") : QStringLiteral("OFF");
}

int readLevel(const DToolChannel& channel, const QString& text, DWording* problem)
{
    const std::optional<int> level = levelOf(channel, text.toUpper());
    if (!level) {
        *problem = unexpected(channel, levels(channel), text);
    }
    return level.value_or(0);
}

Invocation readSetting(const QVector<DToolChannel>& channels, const QString& word, DWording* problem)
{
    const int equals = word.lastIndexOf(QLatin1Char('='));
    if (equals <= 0) {
        *problem = wording(R"(expected CHANNEL=VALUE, found "%1")").arg(word);
        return {};
    }
    const DToolChannel* channel = findChannel(channels, word.left(equals), problem);
    if (channel == nullptr) {
        return {};
    }
    const QString value = word.mid(equals + 1);
    if (const auto level = levelOf(*channel, value.toUpper())) {
        return settingLevel(*channel, *level);
    }
    if (isAnalogue(*channel)) {
        *problem = unexpected(*channel, levels(*channel), value);
        return {};
    }
    const auto course = readCourse(*channel, value.toUpper().split(QLatin1Char(':')));
    if (!course) {
        *problem = unexpected(*channel,
                              wording("ON, OFF, PULSE:MS, or BLINK:MS:PERCENT with a cycle of 1 to %1 "
                                      "milliseconds and 0 to 100 percent")
                                  .arg(c_longestCycleMs),
                              value);
    }
    return course.value_or(Invocation());
}
