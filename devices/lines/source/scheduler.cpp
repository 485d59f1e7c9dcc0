#include <devices/scheduler.h>

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <limits>

Scheduler::Scheduler(QObject* parent)
    : QObject(parent)
{}

Scheduler::~Scheduler() = default;

Scheduler::Appointment Scheduler::at(qint64 timeUs, Action action)
{
    const Appointment appointment(timeUs, ++m_lastNumber);
    const auto made = m_appointments.emplace(appointment, std::move(action)).first;
    if (made == m_appointments.begin()) {
        rearm();
    }
    return appointment;
}

void Scheduler::cancel(Appointment appointment)
{
    m_appointments.erase(appointment);
}

bool Scheduler::hasAppointments() const
{
    return !m_appointments.empty();
}

qint64 Scheduler::earliest() const
{
    return m_appointments.begin()->first.first;
}

void Scheduler::runEarliest()
{
    const Action action = std::move(m_appointments.begin()->second);
    m_appointments.erase(m_appointments.begin());
    action();
}

struct SteadyScheduler::Private
{
    QElapsedTimer clock;
    QTimer timer;
};

SteadyScheduler::SteadyScheduler(QObject* parent)
    : Scheduler(parent)
    , d(std::make_unique<Private>())
{
    d->clock.start();
    d->timer.setSingleShot(true);
    d->timer.setTimerType(Qt::PreciseTimer);
    connect(&d->timer, &QTimer::timeout, this, &SteadyScheduler::runDue);
}

SteadyScheduler::~SteadyScheduler() = default;

qint64 SteadyScheduler::now() const
{
    return d->clock.nsecsElapsed() / 1000;
}

void SteadyScheduler::rearm()
{
    constexpr qint64 longestWaitMs = std::numeric_limits<int>::max();
    const qint64 waitMs = (earliest() - now() + 999) / 1000;
    d->timer.start(static_cast<int>(std::clamp<qint64>(waitMs, 0, longestWaitMs)));
}

/// What falls due while the others run waits for the next pass of the event loop, so that an action that
/// makes its successor at once does not keep the loop.
void SteadyScheduler::runDue()
{
    const qint64 due = now();
    while (hasAppointments() && earliest() <= due) {
        runEarliest();
    }
    if (hasAppointments()) {
        rearm();
    }
}

ManualScheduler::ManualScheduler(QObject* parent)
    : Scheduler(parent)
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

void ManualScheduler::rearm() {}
