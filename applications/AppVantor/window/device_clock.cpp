#include "device_clock.h"

#include <algorithm>

DeviceClock::DeviceClock(DScheduler* scheduler, QObject* parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_lastTickUs(scheduler->now())
    , m_nowUs(m_lastTickUs)
{}

DeviceClock::~DeviceClock()
{
    m_scheduler->cancel(m_next);
}

void DeviceClock::setRunning(bool running)
{
    if (running != m_running) {
        tick(); // courses are held as they are now, not as they were when something changed last
        m_running = running;
        Q_EMIT runningChanged();
        tick();
    }
}

void DeviceClock::want()
{
    if (m_next == DScheduler::Appointment()) {
        m_next = m_scheduler->at(std::max(m_scheduler->now(), m_lastTickUs + c_intervalUs), [this] {
            m_next = {};
            tick();
        });
    }
}

void DeviceClock::tick()
{
    m_lastTickUs = m_scheduler->now();
    if (m_running && m_nowUs != m_lastTickUs) {
        m_nowUs = m_lastTickUs;
        Q_EMIT nowChanged();
    }
    Q_EMIT ticked();
}
