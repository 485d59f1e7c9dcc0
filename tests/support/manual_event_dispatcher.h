#pragma once

#include "manual_scheduler.h"

#include <QAbstractEventDispatcher>

#include <map>
#include <set>

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
    explicit ManualEventDispatcher(ManualScheduler* scheduler);
    ~ManualEventDispatcher() override;

    bool processEvents(QEventLoop::ProcessEventsFlags flags) override;
    bool hasPendingEvents() override;
    void wakeUp() override;
    void interrupt() override {}
    void flush() override {}

    void registerTimer(int id, int intervalMs, Qt::TimerType type, QObject* object) override;
    bool unregisterTimer(int id) override;
    bool unregisterTimers(QObject* object) override;
    QList<TimerInfo> registeredTimers(QObject* object) const override;
    int remainingTime(int id) override;

    void registerSocketNotifier(QSocketNotifier* notifier) override;
    void unregisterSocketNotifier(QSocketNotifier* notifier) override;

private:
    struct Timer
    {
        int intervalMs;
        Qt::TimerType type;
        QObject* object;
        DScheduler::Appointment next;
    };

    bool pass();
    void arm(int id, qint64 timeUs);

    ManualScheduler* const m_scheduler;
    std::map<int, Timer> m_timers;
    std::set<int> m_due; ///< those whose time has come
    bool m_posted = false;
};
