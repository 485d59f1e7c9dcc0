#pragma once

#include <QString>

constexpr qint64 c_usPerSecond = 1000000;

/// A wall-clock time, in microseconds since 1970, in full: "2026-11-21T19:51:17.123456+01:00".
Q_DECL_EXPORT QString fullTime(qint64 wallClockUs);
/// The same as a time of this place's day: "19:51:17.123456".
Q_DECL_EXPORT QString timeOfDay(qint64 wallClockUs, QChar decimalPoint = QLatin1Char('.'));
