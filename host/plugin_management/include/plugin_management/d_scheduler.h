#pragma once

#include <plugin_management/plugin_management_global.h>

#include <QObject>

#include <functional>
#include <map>
#include <memory>
#include <utility>

/// A steady clock with appointments: calls functions at absolute times, in the order of their times (those of
/// one time in the order of their making). It belongs to one thread; the clocks of all threads are one.
class PLUGIN_MANAGEMENT_EXPORT DScheduler : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DScheduler)

public:
    using Action = std::function<void()>;
    /// An appointment: its time and its number. A default one stands for none.
    using Appointment = std::pair<qint64, quint64>;

    ~DScheduler() override;

    /// Microseconds on the steady clock.
    virtual qint64 now() const = 0;
    /// The wall-clock time that belongs to timeUs of the steady clock, in microseconds since 1970. What
    /// belongs together is settled once: setting the clock of the machine changes nothing.
    qint64 wallClock(qint64 timeUs) const { return timeUs + m_wallClockOffsetUs; }

    /// Calls action at timeUs, from the event loop; a time that has passed counts as now.
    Appointment at(qint64 timeUs, Action action);
    /// Forgets an appointment; one that is over or none does nothing.
    void cancel(Appointment appointment);

protected:
    /// wallClockOffsetUs is what the wall clock shows, in microseconds since 1970, when the steady clock
    /// shows 0.
    DScheduler(qint64 wallClockOffsetUs, QObject* parent);

    /// The earliest appointment has changed.
    virtual void rearm() = 0;
    bool hasAppointments() const;
    /// Time of the earliest appointment; there must be one.
    qint64 earliest() const;
    /// Number of the appointment that was made last.
    quint64 lastNumber() const { return m_lastNumber; }
    /// True when the earliest appointment is due at timeUs, and had been made when lastNumber() was last.
    bool isDue(qint64 timeUs, quint64 last) const;
    /// Takes the earliest appointment and carries it out; there must be one.
    void runEarliest();

private:
    const qint64 m_wallClockOffsetUs;
    std::map<Appointment, Action> m_appointments;
    quint64 m_lastNumber = 0;
};

/// The scheduler of real time: its clock is the monotonic clock of the system.
class PLUGIN_MANAGEMENT_EXPORT DSteadyScheduler : public DScheduler
{
    Q_OBJECT
    Q_DISABLE_COPY(DSteadyScheduler)

public:
    /// Appointments are kept in the thread that makes the scheduler.
    explicit DSteadyScheduler(QObject* parent = nullptr);
    ~DSteadyScheduler() override;

    qint64 now() const override;

protected:
    void rearm() override;

private:
    void runDue();

    struct Private;
    std::unique_ptr<Private> d;
};
