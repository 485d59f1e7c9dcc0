#include "device_clock.h"

#include <algorithm>

namespace {
constexpr int c_tickMs = 33;
}

DeviceClock::DeviceClock(LocalClock localClock, QObject* parent)
    : QObject(parent)
    , m_localClock(std::move(localClock))
{
    m_steadyClock.start();
    if (!m_localClock) {
        m_localClock = [this] { return m_steadyClock.nsecsElapsed() / 1000; };
    }
    m_localStartUs = m_localClock();
    m_nowUs = m_localStartUs;
    m_timer.setInterval(c_tickMs);
    connect(&m_timer, &QTimer::timeout, this, &DeviceClock::tick);
}

void DeviceClock::setRunning(bool running)
{
    if (running == isRunning()) {
        return;
    }
    if (running) {
        m_timer.start();
        tick();
    } else {
        m_timer.stop();
    }
    Q_EMIT runningChanged();
}

void DeviceClock::observe(qint64 deviceUs)
{
    const qint64 offset = deviceUs - m_localClock();
    m_offsetUs = m_observed ? std::max(m_offsetUs, offset) : offset;
    m_observed = true;
}

void DeviceClock::tick()
{
    m_nowUs = m_localClock() + m_offsetUs;
    Q_EMIT ticked();
}
