#pragma once

#include <QString>
#include <QVector>

/// A part of time: lengthUs microseconds from fromUs on.
struct TimeSpan
{
    qint64 fromUs = 0;
    qint64 lengthUs = 0;

    qint64 toUs() const { return fromUs + lengthUs; }
    /// The time at a share of the span, 0 for its begin and 1 for its end.
    qint64 at(double share) const;
    /// The share at which timeUs is; less than 0 or more than 1 outside of the span.
    double shareOf(qint64 timeUs) const;
};

/// span with factor times as much detail, less than 1 for less, that shows the same time as before at share.
/// It stays between the shortest and the longest length.
TimeSpan zoomed(const TimeSpan& span, double factor, double share);

constexpr qint64 c_shortestSpanUs = 100;

/// The marks of an axis that is width pixels long, at whole multiples of 1, 2 or 5 times a power of ten
/// microseconds, so far apart that their texts do not touch. None where there is no room.
QVector<qint64> axisMarks(const TimeSpan& span, double width);

/// A time beside another in seconds, with as many decimals as tell apart what is resolutionUs apart.
QString offsetText(qint64 us, qint64 resolutionUs);
/// A length of time, exact: "850 µs", "12.345 ms", "2.5 s".
QString lengthText(qint64 us);
/// How often something happens that takes periodUs, 1 or more, in four digits: "80 Hz", "1.25 kHz".
QString frequencyText(qint64 periodUs);
