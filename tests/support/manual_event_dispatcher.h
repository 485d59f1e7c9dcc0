#pragma once

#include "manual_scheduler.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QTimerEvent>

#include <algorithm>
#include <map>
#include <set>
#include <utility>
#include <vector>

/// An event loop whose timers run on a scheduler that is moved by hand: nothing waits, and every run is the
/// same. Where a loop waits for more, the time moves on to what comes next; waiting for nothing ends the
/// process. There are no socket notifiers.
///
/// It is given to QCoreApplication::setEventDispatcher before the application is made, which then owns it.
class ManualEventDispatcher : public QAbstractEventDispatcher
{
    Q_OBJECT
    Q_DISABLE_COPY(ManualEventDispatcher)

public:
    /// scheduler must outlive the dispatcher.
    explicit ManualEventDispatcher(ManualScheduler* scheduler)
        : m_scheduler(scheduler)
    {}

    ~ManualEventDispatcher() override
    {
        for (const auto& [id, timer] : m_timers) {
            m_scheduler->cancel(timer.next);
        }
    }

    bool processEvents(QEventLoop::ProcessEventsFlags flags) override
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

    bool hasPendingEvents() override { return m_posted || m_scheduler->isDue() || !m_due.empty(); }

    /// Called for every event that is posted.
    void wakeUp() override { m_posted = true; }

    void interrupt() override {}
    void flush() override {}

    void registerTimer(int id, int intervalMs, Qt::TimerType type, QObject* object) override
    {
        m_timers[id] = {intervalMs, type, object, {}};
        arm(id, m_scheduler->now() + intervalMs * c_usPerMs);
    }

    bool unregisterTimer(int id) override
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

    bool unregisterTimers(QObject* object) override
    {
        const QList<TimerInfo> timers = registeredTimers(object);
        for (const TimerInfo& timer : timers) {
            unregisterTimer(timer.timerId);
        }
        return !timers.isEmpty();
    }

    QList<TimerInfo> registeredTimers(QObject* object) const override
    {
        QList<TimerInfo> timers;
        for (const auto& [id, timer] : m_timers) {
            if (timer.object == object) {
                timers.append(TimerInfo(id, timer.intervalMs, timer.type));
            }
        }
        return timers;
    }

    int remainingTime(int id) override
    {
        const auto timer = m_timers.find(id);
        if (timer == m_timers.end()) {
            return -1;
        }
        const qint64 leftUs = std::max<qint64>(timer->second.next.first - m_scheduler->now(), 0);
        return static_cast<int>((leftUs + c_usPerMs - 1) / c_usPerMs);
    }

    void registerSocketNotifier(QSocketNotifier* notifier) override
    {
        Q_UNUSED(notifier)
        qFatal("an event loop that is moved by hand waits for no descriptor");
    }

    void unregisterSocketNotifier(QSocketNotifier* notifier) override { Q_UNUSED(notifier) }

private:
    static constexpr qint64 c_usPerMs = 1000;

    struct Timer
    {
        int intervalMs;
        Qt::TimerType type;
        QObject* object;
        DScheduler::Appointment next;
    };

    /// A timer is told of its time once in a pass, however short its interval. Returns whether there was
    /// anything to do.
    bool pass()
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

    void arm(int id, qint64 timeUs)
    {
        m_timers.at(id).next = m_scheduler->at(timeUs, [this, id] { m_due.insert(id); });
    }

    ManualScheduler* const m_scheduler;
    std::map<int, Timer> m_timers;
    std::set<int> m_due; ///< those whose time has come
    bool m_posted = false;
};
