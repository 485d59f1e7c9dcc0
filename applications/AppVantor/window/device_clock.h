#pragma once

#include <plugin_management/d_scheduler.h>

#include <QObject>

/// The present time for displays. It ticks while somebody wants it to, twenty times a second at most: a
/// window in which nothing changes rests.
class DeviceClock : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DeviceClock)
    /// Where courses end, in microseconds on the steady clock: the last tick, and while the clock stands
    /// still that moment.
    Q_PROPERTY(double now READ now NOTIFY nowChanged)
    /// False while the courses are held.
    Q_PROPERTY(bool running READ isRunning WRITE setRunning NOTIFY runningChanged)

public:
    /// scheduler tells the time, and must outlive the clock.
    explicit DeviceClock(DScheduler* scheduler, QObject* parent = nullptr);
    ~DeviceClock() override;

    const DScheduler& scheduler() const { return *m_scheduler; }
    double now() const { return static_cast<double>(m_nowUs); }
    bool isRunning() const { return m_running; }
    void setRunning(bool running);

    /// Something shown moves or has changed: the clock ticks once more, from the event loop.
    void want();
    /// Takes the present time.
    void tick();

    /// The least time between two ticks.
    static constexpr qint64 c_intervalUs = 50000;

Q_SIGNALS:
    /// What has changed may be shown now.
    void ticked();
    void nowChanged();
    void runningChanged();

private:
    DScheduler* const m_scheduler;
    DScheduler::Appointment m_next;
    bool m_running = true;
    qint64 m_lastTickUs;
    qint64 m_nowUs;
};
