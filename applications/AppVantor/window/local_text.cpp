#include "local_text.h"

#include <process/time_text.h>

#include <QLocale>

QString numberText(qint64 number)
{
    return QLocale().toString(number);
}

QString decimalText(double number, int decimals)
{
    return QLocale().toString(number, 'f', decimals);
}

QString roundedText(double number, int digits)
{
    return QLocale().toString(number, 'g', digits);
}

QString withUnit(const QString& number, const QString& unit)
{
    return number + QChar(QChar::Nbsp) + unit;
}

QString timeOfDayText(qint64 wallClockUs)
{
    return timeOfDay(wallClockUs, QLocale().decimalPoint());
}
