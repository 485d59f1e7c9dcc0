#pragma once

#include <QObject>

#include <functional>
#include <map>
#include <memory>
#include <utility>

/// A steady clock with appointments: calls functions at absolute times, in the order of their times (those of
/// one time in the order of their making).
class Scheduler : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(Scheduler)

public:
    using Action = std::function<void()>;
    /// An appointment: its time and its number. A default one stands for none.
    using Appointment = std::pair<qint64, quint64>;

    ~Scheduler() override;

    /// Microseconds since the clock was started.
    virtual qint64 now() const = 0;

    /// Calls action at timeUs, from the event loop; a time that has passed counts as now.
    Appointment at(qint64 timeUs, Action action);
    /// Forgets an appointment; one that is over or none does nothing.
    void cancel(Appointment appointment);

protected:
    explicit Scheduler(QObject* parent);

    /// The earliest appointment has changed.
    virtual void rearm() = 0;
    bool hasAppointments() const;
    /// Time of the earliest appointment; there must be one.
    qint64 earliest() const;
    /// Takes the earliest appointment and carries it out; there must be one.
    void runEarliest();

private:
    std::map<Appointment, Action> m_appointments;
    quint64 m_lastNumber = 0;
};

/// The scheduler of real time.
class SteadyScheduler : public Scheduler
{
    Q_OBJECT
    Q_DISABLE_COPY(SteadyScheduler)

public:
    explicit SteadyScheduler(QObject* parent = nullptr);
    ~SteadyScheduler() override;

    qint64 now() const override;

protected:
    void rearm() override;

private:
    void runDue();

    struct Private;
    std::unique_ptr<Private> d;
};

/// A scheduler whose time stands still until it is moved: for tests, where every run must be the same.
class ManualScheduler : public Scheduler
{
    Q_OBJECT
    Q_DISABLE_COPY(ManualScheduler)

public:
    explicit ManualScheduler(QObject* parent = nullptr);
    ~ManualScheduler() override;

    qint64 now() const override;
    /// Moves the time forward by us microseconds and carries out what falls due, each at its own time.
    void advance(qint64 us);

protected:
    void rearm() override;

private:
    qint64 m_now = 0;
};
