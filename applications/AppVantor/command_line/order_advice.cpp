#include "order_advice.h"

#include "channel_value.h"

#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>
#include <process/did_you_mean.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// Whether the order's command, one of these, has the parameter. Commands are known by the names of their
/// parameters alone: a plugin may have others.
bool declares(const QVector<DCommandDescription>& commands, const DOrder& order, const QString& parameter)
{
    return std::any_of(commands.cbegin(), commands.cend(), [&](const DCommandDescription& command) {
        return command.name == order.commandName() &&
               std::any_of(command.parameters.cbegin(), command.parameters.cend(),
                           [&](const DDeclaration& declared) { return declared.name == parameter; });
    });
}

/// A width in milliseconds as the device takes it: cut to 16 bits.
int cut(float width)
{
    constexpr qint64 sixteenBits = 0xFFFF;
    return static_cast<int>(static_cast<qint64>(width) & sixteenBits);
}

/// What a duty cycle means that is none.
QString blinkingWith(int dutyCycle, int duration)
{
    constexpr float percent = 100.0F;
    if (dutyCycle < 0) {
        return QStringLiteral("a duty cycle below 0 means that the line stays off");
    }
    const float on = static_cast<float>(duration) * (static_cast<float>(dutyCycle) / percent);
    const float off = (1.0F - static_cast<float>(dutyCycle) / percent) * static_cast<float>(duration);
    QString text = QStringLiteral("a duty cycle above 100 means widths that are cut to 16 bits");
    constexpr auto largest = static_cast<float>(std::numeric_limits<int>::max()) / 2.0F;
    if (std::max(std::abs(on), std::abs(off)) <= largest) {
        text += QStringLiteral(": on for %1 ms, off for %2 ms").arg(cut(on)).arg(cut(off));
    }
    return text;
}

/// What a word does that the parameter does not know; empty for one that it knows.
QString warningOfWord(const DOrder& order, const QString& parameter, const QString& meaning)
{
    const QString word = order.arguments().value(parameter).toString();
    const QStringList known = knownWords(parameter);
    if (word.isEmpty() || known.contains(word) || !declares(order.tool()->commands(), order, parameter)) {
        return QString();
    }
    return QStringLiteral("\"%1\" is no %2: %3; expected one of %4")
               .arg(word, parameter, meaning, known.join(QStringLiteral(", "))) +
           didYouMean(word, known).english();
}

QString warningOfDutyCycle(const DOrder& order)
{
    constexpr int usualDuration = 1000;
    constexpr int highest = 100;
    const QVariantMap arguments = order.arguments();
    const QString dutyCycle = QStringLiteral("dutyCycle");
    const int percent = arguments.value(dutyCycle).toInt();
    if ((percent >= 0 && percent <= highest) ||
        arguments.value(QStringLiteral("state")) != QLatin1String("BLINK") ||
        !declares(order.tool()->commands(), order, dutyCycle)) {
        return QString();
    }
    return blinkingWith(percent, arguments.value(QStringLiteral("duration"), usualDuration).toInt());
}

} // namespace

QString warningOf(const DOrder& order)
{
    if (order.tool() == nullptr) {
        return QString();
    }
    for (const QString& warning :
         {warningOfWord(order, QStringLiteral("state"), QStringLiteral("nothing is sent to the device")),
          warningOfWord(order, QStringLiteral("edge"),
                        QStringLiteral("\"value\" is the reading itself, as without an edge")),
          warningOfDutyCycle(order)}) {
        if (!warning.isEmpty()) {
            return warning;
        }
    }
    return QString();
}

QString reasonOf(const DOrder& order)
{
    const QString parameter = QStringLiteral("channel");
    const QString channel = order.arguments().value(parameter).toString();
    DWording problem;
    if (!channel.isEmpty() && order.tool() != nullptr &&
        findChannel(order.tool()->channels(), channel, &problem) == nullptr &&
        declares(order.tool()->orderables(), order, parameter)) {
        return order.failure().text.english() + QStringLiteral("; ") + problem.english();
    }
    return order.failure().text.english();
}
