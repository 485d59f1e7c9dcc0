#include "manual_event_dispatcher.h"

#include <QCoreApplication>
#include <QTimerEvent>

#include <algorithm>
#include <utility>
#include <vector>

namespace {
constexpr qint64 c_usPerMs = 1000;
}

ManualEventDispatcher::ManualEventDispatcher(ManualScheduler* scheduler)
    : m_scheduler(scheduler)
{}

ManualEventDispatcher::~ManualEventDispatcher()
{
    for (const auto& [id, timer] : m_timers) {
        m_scheduler->cancel(timer.next);
    }
}

bool ManualEventDispatcher::processEvents(QEventLoop::ProcessEventsFlags flags)
{
    const bool handled = pass();
    if (handled || !flags.testFlag(QEventLoop::WaitForMoreEvents)) {
        return handled;
    }
    if (!m_scheduler->advanceToNext()) {
        qFatal("the event loop waits for nothing");
    }
    pass();
    return true;
}

/// A timer is told of its time once in a pass, however short its interval. Returns whether there was
/// anything to do.
bool ManualEventDispatcher::pass()
{
    const bool handled = hasPendingEvents();
    Q_EMIT awake();
    m_posted = false;
    QCoreApplication::sendPostedEvents();
    m_scheduler->advance(0);
    const std::set<int> due = std::exchange(m_due, {});
    for (const int id : due) {
        const auto timer = m_timers.find(id);
        if (timer == m_timers.end()) {
            continue; // one before it has stopped it
        }
        const qint64 next = timer->second.next.first + timer->second.intervalMs * c_usPerMs;
        arm(id, std::max(next, m_scheduler->now()));
        QTimerEvent event(id);
        QCoreApplication::sendEvent(timer->second.object, &event);
    }
    return handled;
}

bool ManualEventDispatcher::hasPendingEvents()
{
    return m_posted || m_scheduler->isDue() || !m_due.empty();
}

/// Called for every event that is posted.
void ManualEventDispatcher::wakeUp()
{
    m_posted = true;
}

void ManualEventDispatcher::registerTimer(int id, int intervalMs, Qt::TimerType type, QObject* object)
{
    m_timers[id] = {intervalMs, type, object, {}};
    arm(id, m_scheduler->now() + intervalMs * c_usPerMs);
}

void ManualEventDispatcher::arm(int id, qint64 timeUs)
{
    m_timers.at(id).next = m_scheduler->at(timeUs, [this, id] { m_due.insert(id); });
}

bool ManualEventDispatcher::unregisterTimer(int id)
{
    const auto timer = m_timers.find(id);
    if (timer == m_timers.end()) {
        return false;
    }
    m_scheduler->cancel(timer->second.next);
    m_timers.erase(timer);
    m_due.erase(id);
    return true;
}

bool ManualEventDispatcher::unregisterTimers(QObject* object)
{
    const QList<TimerInfo> timers = registeredTimers(object);
    for (const TimerInfo& timer : timers) {
        unregisterTimer(timer.timerId);
    }
    return !timers.isEmpty();
}

QList<QAbstractEventDispatcher::TimerInfo> ManualEventDispatcher::registeredTimers(QObject* object) const
{
    QList<TimerInfo> timers;
    for (const auto& [id, timer] : m_timers) {
        if (timer.object == object) {
            timers.append(TimerInfo(id, timer.intervalMs, timer.type));
        }
    }
    return timers;
}

int ManualEventDispatcher::remainingTime(int id)
{
    const auto timer = m_timers.find(id);
    if (timer == m_timers.end()) {
        return -1;
    }
    const qint64 leftUs = std::max<qint64>(timer->second.next.first - m_scheduler->now(), 0);
    return static_cast<int>((leftUs + c_usPerMs - 1) / c_usPerMs);
}

void ManualEventDispatcher::registerSocketNotifier(QSocketNotifier* notifier)
{
    Q_UNUSED(notifier)
    qFatal("an event loop that is moved by hand waits for no descriptor");
}

void ManualEventDispatcher::unregisterSocketNotifier(QSocketNotifier* notifier)
{
    Q_UNUSED(notifier)
}
