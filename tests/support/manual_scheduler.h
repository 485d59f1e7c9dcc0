#pragma once

#include <plugin_management/d_scheduler.h>

#include <algorithm>

/// A scheduler whose time stands still until it is moved, so that every run is the same.
class ManualScheduler : public DScheduler
{
    Q_OBJECT
    Q_DISABLE_COPY(ManualScheduler)

public:
    /// The wall clock shows 2026-01-01T00:00:00 UTC at time 0.
    static constexpr qint64 c_wallClockOffsetUs = 1767225600000000;

    explicit ManualScheduler(QObject* parent = nullptr)
        : DScheduler(c_wallClockOffsetUs, parent)
    {}

    qint64 now() const override { return m_now; }
    /// Moves the time forward by us microseconds and carries out what falls due, each at its own time.
    void advance(qint64 us)
    {
        const qint64 end = m_now + us;
        while (hasAppointments() && earliest() <= end) {
            m_now = std::max(m_now, earliest());
            runEarliest();
        }
        m_now = std::max(m_now, end); // an action may have moved it further
    }

    /// Moves the time forward as it passes for a thread that is busy: what falls due waits for advance.
    void elapse(qint64 us) { m_now += us; }
    /// Moves the time on to the earliest appointment, and carries it out; false when there is none.
    bool advanceToNext()
    {
        if (!hasAppointments()) {
            return false;
        }
        advance(std::max<qint64>(earliest() - m_now, 0));
        return true;
    }

    /// True when an appointment waits to be carried out.
    bool isDue() const { return hasAppointments() && earliest() <= m_now; }
    /// Sets the time back to 0. There may be no appointment.
    void restart()
    {
        if (hasAppointments()) {
            qFatal("the time is set back while somebody waits for it");
        }
        m_now = 0;
    }

protected:
    void rearm() override {}

private:
    qint64 m_now = 0;
};
