#include "time_text.h"

#include <QDateTime>

#include <limits>

namespace {

struct LocalSecond
{
    qint64 sinceEpoch = std::numeric_limits<qint64>::min(); ///< that of no time
    QString date;
    QString timeOfDay;
    QString offset; ///< from UTC
};

/// The latest one is kept: the system looks for the rules of the time zone each time it is asked.
const LocalSecond& localSecond(qint64 sinceEpoch)
{
    static LocalSecond latest;
    if (latest.sinceEpoch != sinceEpoch) {
        const QDateTime local = QDateTime::fromSecsSinceEpoch(sinceEpoch);
        const int offset = local.offsetFromUtc();
        latest = {sinceEpoch, local.toString(QStringLiteral("yyyy-MM-dd")),
                  local.toString(QStringLiteral("HH:mm:ss")),
                  QLatin1Char(offset < 0 ? '-' : '+') +
                      QTime(0, 0).addSecs(qAbs(offset)).toString(QStringLiteral("HH:mm"))};
    }
    return latest;
}

/// Microseconds since the second began, before 1970, too.
qint64 fractionOf(qint64 wallClockUs)
{
    return (wallClockUs % c_usPerSecond + c_usPerSecond) % c_usPerSecond;
}

const LocalSecond& secondOf(qint64 wallClockUs)
{
    return localSecond((wallClockUs - fractionOf(wallClockUs)) / c_usPerSecond);
}

QString decimals(qint64 wallClockUs)
{
    constexpr int digits = 6;
    return QStringLiteral("%1").arg(fractionOf(wallClockUs), digits, 10, QLatin1Char('0'));
}

} // namespace

QString fullTime(qint64 wallClockUs)
{
    const LocalSecond& second = secondOf(wallClockUs);
    return second.date + QLatin1Char('T') + second.timeOfDay + QLatin1Char('.') + decimals(wallClockUs) +
           second.offset;
}

QString timeOfDay(qint64 wallClockUs, QChar decimalPoint)
{
    return secondOf(wallClockUs).timeOfDay + decimalPoint + decimals(wallClockUs);
}
