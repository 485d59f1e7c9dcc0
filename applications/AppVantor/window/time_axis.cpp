#include "time_axis.h"

#include "line_history.h"
#include "local_text.h"

#include <process/time_text.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr int c_usDecimals = 6;

/// Decimals of seconds that show steps of so many microseconds.
int decimalsOf(qint64 stepUs)
{
    int decimals = c_usDecimals;
    for (qint64 unit = 10; unit <= stepUs && decimals > 0; unit *= 10) {
        --decimals;
    }
    return decimals;
}

} // namespace

qint64 TimeSpan::at(double share) const
{
    return fromUs + std::llround(share * static_cast<double>(lengthUs));
}

double TimeSpan::shareOf(qint64 timeUs) const
{
    return lengthUs > 0 ? static_cast<double>(timeUs - fromUs) / static_cast<double>(lengthUs) : 0;
}

TimeSpan zoomed(const TimeSpan& span, double factor, double share)
{
    const double wanted =
        std::clamp(static_cast<double>(span.lengthUs) / factor, static_cast<double>(c_shortestSpanUs),
                   static_cast<double>(LineHistory::c_longestUs));
    const qint64 length = std::llround(wanted);
    return {span.fromUs + std::llround(share * static_cast<double>(span.lengthUs - length)), length};
}

QVector<qint64> axisMarks(const TimeSpan& span, double width)
{
    constexpr double textWidth = 52;
    constexpr double digitWidth = 8;
    if (width < textWidth || span.lengthUs <= 0) {
        return {};
    }
    const double usPerPixel = static_cast<double>(span.lengthUs) / width;
    const auto fits = [usPerPixel](qint64 stepUs) {
        return static_cast<double>(stepUs) / usPerPixel >= textWidth + digitWidth * decimalsOf(stepUs);
    };
    qint64 stepUs = 1;
    for (int number = 0; !fits(stepUs); ++number) {
        stepUs = number % 3 == 1 ? stepUs / 2 * 5 : stepUs * 2; // 1, 2, 5, 10
    }
    qint64 mark = span.fromUs / stepUs * stepUs;
    while (mark < span.fromUs) {
        mark += stepUs;
    }
    QVector<qint64> marks;
    for (; mark <= span.toUs(); mark += stepUs) {
        marks.append(mark);
    }
    return marks;
}

QString offsetText(qint64 us, qint64 resolutionUs)
{
    const QString text = decimalText(static_cast<double>(std::abs(us)) / c_usPerSecond,
                                     decimalsOf(std::max<qint64>(1, resolutionUs)));
    return (us < 0 ? QStringLiteral("\u2212") : QString()) + withUnit(text, QStringLiteral("s"));
}

QString lengthText(qint64 us)
{
    constexpr qint64 ms = c_usPerSecond / 1000;
    if (us < ms) {
        return withUnit(numberText(us), QStringLiteral("\u00b5s"));
    }
    constexpr int digits = 12; // a microsecond of the longest recording
    return us < c_usPerSecond
               ? withUnit(roundedText(static_cast<double>(us) / ms, digits), QStringLiteral("ms"))
               : withUnit(roundedText(static_cast<double>(us) / c_usPerSecond, digits), QStringLiteral("s"));
}

QString frequencyText(qint64 periodUs)
{
    constexpr double kilo = 1000;
    constexpr int digits = 4;
    const double hertz = c_usPerSecond / static_cast<double>(periodUs);
    return hertz < kilo ? withUnit(roundedText(hertz, digits), QStringLiteral("Hz"))
                        : withUnit(roundedText(hertz / kilo, digits), QStringLiteral("kHz"));
}
