#include "late_scheduler.h"

#include <algorithm>

LateScheduler::LateScheduler(qint64 lateUs)
    : DScheduler(0, nullptr)
    , m_lateUs(lateUs)
{}

LateScheduler::~LateScheduler() = default;

qint64 LateScheduler::now() const
{
    return m_now;
}

void LateScheduler::keepNext()
{
    m_now = std::max(m_now, earliest() + m_lateUs);
    runEarliest();
}

void LateScheduler::rearm() {}
