#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>

/// The present time on a device's own clock, which only the times of its announcements tell: the one that
/// came through fastest is believed. Ticks for displays while it runs.
class DeviceClock : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DeviceClock)
    /// Time of the last tick, in microseconds.
    Q_PROPERTY(double now READ now NOTIFY ticked)
    Q_PROPERTY(bool running READ isRunning WRITE setRunning NOTIFY runningChanged)

public:
    /// A clock here, in microseconds.
    using LocalClock = std::function<qint64()>;

    /// localClock tells the time between announcements; without one, the steady clock of this machine does.
    explicit DeviceClock(LocalClock localClock = LocalClock(), QObject* parent = nullptr);

    /// Time of the last tick.
    double now() const { return static_cast<double>(m_nowUs); }
    /// Time when the clock was made.
    qint64 startUs() const { return m_localStartUs + m_offsetUs; }
    bool isRunning() const { return m_timer.isActive(); }
    void setRunning(bool running);

    /// The device has just announced something of its time deviceUs.
    void observe(qint64 deviceUs);
    /// Takes the present time.
    void tick();

Q_SIGNALS:
    void ticked();
    void runningChanged();

private:
    QElapsedTimer m_steadyClock;
    LocalClock m_localClock;
    QTimer m_timer;
    qint64 m_localStartUs = 0;
    qint64 m_offsetUs = 0;
    qint64 m_nowUs = 0;
    bool m_observed = false;
};
