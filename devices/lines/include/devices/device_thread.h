#pragma once

#include <devices/line_link.h>

#include <QObject>
#include <QThread>

/// The link to a device that lives in a thread of its own, where it keeps its own time whatever the thread of
/// its front does. What it tells comes in batches through the event loop, one batch on its way at a time:
/// while the front is busy, the rest waits in the device's thread. Past a bound, changes of lines are left
/// out, counted, and made up for by the present levels.
class DeviceThread : public LineDriver
{
public:
    /// Makes the device in a new thread; with a real-time priority where the system grants it, else a failure
    /// is told. listener lives in this thread and outlives the link.
    DeviceThread(const LineDriverMaker& maker, LineListener* listener, bool realtime);
    /// The thread has ended when this returns.
    ~DeviceThread() override;
    Q_DISABLE_COPY(DeviceThread)

    void open() override;
    void close() override;
    void request(quint64 id, const QString& instruction, const QVariantMap& arguments) override;
    void cancel(quint64 id) override;
    void setInput(int line, int level) override;
    void setPluggedIn(bool pluggedIn) override;

private:
    class Front;
    class Worker;

    /// Calls the device from its own event loop.
    void ask(std::function<void(LineDriver&)> question);

    const std::unique_ptr<Front> m_front;
    QThread m_thread;
    Worker* m_worker; ///< lives in the thread, and ends with it
};
