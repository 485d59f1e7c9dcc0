#pragma once

#include <QString>

// Numbers and times of day as people write them in the language of the window: QLocale() is that of its
// texts.

QString numberText(qint64 number);
/// With so many decimals.
QString decimalText(double number, int decimals);
/// With so many digits, those that say something.
QString roundedText(double number, int digits);
/// A number and its unit, on one line.
QString withUnit(const QString& number, const QString& unit);
/// A wall-clock time, in microseconds since 1970, as a time of this place's day.
QString timeOfDayText(qint64 wallClockUs);
