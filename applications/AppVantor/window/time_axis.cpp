#include "time_axis.h"

#include "line_history.h"
#include "texts.h"

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

/// Without the zeros at its end.
QString shortNumber(double value, int decimals)
{
    QString text = QString::number(value, 'f', decimals);
    if (decimals > 0) {
        while (text.endsWith(QLatin1Char('0'))) {
            text.chop(1);
        }
        if (text.endsWith(QLatin1Char('.'))) {
            text.chop(1);
        }
    }
    return withDecimalSign(text);
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
    const QString text = QString::number(static_cast<double>(std::abs(us)) / c_usPerSecond, 'f',
                                         decimalsOf(std::max<qint64>(1, resolutionUs)));
    return (us < 0 ? QStringLiteral("\u2212") : QString()) + withDecimalSign(text) + QStringLiteral(" s");
}

QString lengthText(qint64 us)
{
    constexpr qint64 ms = 1000;
    constexpr qint64 second = 1000 * ms;
    if (us < ms) {
        return QString::number(us) + QStringLiteral(" \u00b5s");
    }
    return us < second ? shortNumber(static_cast<double>(us) / ms, 3) + QStringLiteral(" ms")
                       : shortNumber(static_cast<double>(us) / second, c_usDecimals) + QStringLiteral(" s");
}

QString frequencyText(qint64 periodUs)
{
    constexpr double kilo = 1000;
    constexpr int digits = 4;
    const double hertz = c_usPerSecond / static_cast<double>(periodUs);
    return hertz < kilo
               ? withDecimalSign(QString::number(hertz, 'g', digits)) + QStringLiteral(" Hz")
               : withDecimalSign(QString::number(hertz / kilo, 'g', digits)) + QStringLiteral(" kHz");
}
