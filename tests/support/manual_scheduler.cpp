#include "manual_scheduler.h"

#include <algorithm>

ManualScheduler::ManualScheduler(QObject* parent)
    : DScheduler(c_wallClockOffsetUs, parent)
{}

ManualScheduler::~ManualScheduler() = default;

qint64 ManualScheduler::now() const
{
    return m_now;
}

void ManualScheduler::advance(qint64 us)
{
    const qint64 end = m_now + us;
    while (hasAppointments() && earliest() <= end) {
        m_now = std::max(m_now, earliest());
        runEarliest();
    }
    m_now = std::max(m_now, end); // an action may have moved it further
}

void ManualScheduler::elapse(qint64 us)
{
    m_now += us;
}

bool ManualScheduler::advanceToNext()
{
    if (!hasAppointments()) {
        return false;
    }
    advance(std::max<qint64>(earliest() - m_now, 0));
    return true;
}

bool ManualScheduler::isDue() const
{
    return hasAppointments() && earliest() <= m_now;
}

void ManualScheduler::restart()
{
    if (hasAppointments()) {
        qFatal("the time is set back while somebody waits for it");
    }
    m_now = 0;
}

void ManualScheduler::rearm() {}
