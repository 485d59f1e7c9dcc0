#include <devices/device_thread.h>

#include "handover.h"

#include <plugin_management/d_scheduler.h>

#include <QMap>
#include <QPointer>

#include <csignal>
#include <pthread.h>
#include <sched.h>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t c_mostWaiting = 1 << 16; ///< an answer waits for two batches of these at most
constexpr int c_realtimePriority = 10;

using Message = std::function<void(LineListener&)>;
using Batch = std::vector<Message>;

/// Keeps signals from a thread that is started while it lives: they are the main thread's. Those of a fault
/// of its own reach it.
class SignalsKeptAway
{
public:
    SignalsKeptAway()
    {
        sigset_t kept;
        sigfillset(&kept);
        for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL}) {
            sigdelset(&kept, fault);
        }
        pthread_sigmask(SIG_SETMASK, &kept, &m_before);
    }
    ~SignalsKeptAway() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    Q_DISABLE_COPY(SignalsKeptAway)

private:
    sigset_t m_before;
};

} // namespace

/// What batches are sent to: those on their way end with it.
class DeviceThread::Front : public QObject
{
public:
    explicit Front(LineListener* listener)
        : m_listener(listener)
    {}

    /// How often the device was closed: what it told before is of no interest afterwards.
    int closings = 0;

    /// Tells what is in batch, and answers whether this still lives.
    bool take(const Batch& batch, int batchClosings)
    {
        const QPointer<Front> self(this); // who hears of it may close or destroy the device
        for (const Message& message : batch) {
            if (self.isNull() || batchClosings != closings) {
                break;
            }
            message(*m_listener);
        }
        return !self.isNull();
    }

private:
    LineListener* const m_listener;
};

/// The device's side of the link.
class DeviceThread::Worker : public QObject, private LineListener
{
public:
    Worker(const LineDriverMaker& maker, Front* front)
        : m_maker(maker)
        , m_front(front)
    {}

    void start(bool realtime)
    {
        m_scheduler = std::make_unique<DSteadyScheduler>();
        m_driver = m_maker(m_scheduler.get(), this);
        const sched_param priority = {c_realtimePriority};
        const int error = realtime ? pthread_setschedparam(pthread_self(), SCHED_FIFO, &priority) : 0;
        if (error != 0) {
            failureTold(wording("the system grants no real-time priority: %1")
                            .arg(DWording::told(qt_error_string(error))));
        }
    }

    LineDriver& driver() { return *m_driver; }

    void close()
    {
        m_driver->close();
        m_waiting.clear();
        m_lostEvents.clear();
        m_lostChanges = 0;
        m_lostLevels.clear();
        ++m_closings;
    }

private:
    void requestAnswered(quint64 id, const QVariantMap& reply, qint64 timeUs) override
    {
        queue([id, reply, timeUs](LineListener& listener) { listener.requestAnswered(id, reply, timeUs); });
    }

    void eventTold(quint64 id, const QVariantMap& reply, qint64 timeUs) override
    {
        if (hasRoom()) {
            queue([id, reply, timeUs](LineListener& listener) { listener.eventTold(id, reply, timeUs); });
        } else {
            eventsLeftOut(id, 1);
        }
    }

    void eventsLeftOut(quint64 id, quint64 count) override { m_lostEvents[id] += count; }

    void requestRefused(quint64 id, const DFailure& failure) override
    {
        queue([id, failure](LineListener& listener) { listener.requestRefused(id, failure); });
    }

    void lineTold(int line, const LineLevel& level) override
    {
        if (hasRoom()) {
            queue([line, level](LineListener& listener) { listener.lineTold(line, level); });
        } else {
            leaveOut(1, level.sinceUs, {{line, level}});
        }
    }

    void blinkingTold(int line, bool blinks) override
    {
        queue([line, blinks](LineListener& listener) { listener.blinkingTold(line, blinks); });
    }

    void changesLeftOut(quint64 count, qint64 fromUs, const QMap<int, LineLevel>& levels) override
    {
        if (hasRoom()) {
            queue([count, fromUs, levels](LineListener& listener) {
                listener.changesLeftOut(count, fromUs, levels);
            });
        } else {
            leaveOut(count, fromUs, levels);
        }
    }

    void leaveOut(quint64 count, qint64 fromUs, const QMap<int, LineLevel>& levels)
    {
        m_lostFromUs = m_lostChanges == 0 ? fromUs : std::min(m_lostFromUs, fromUs);
        m_lostChanges += count;
        for (auto line = levels.cbegin(); line != levels.cend(); ++line) {
            m_lostLevels.insert(line.key(), *line);
        }
    }

    void stateTold(DDevice::State state, const DWording& problem, qint64 timeUs) override
    {
        makeUp(); // a state is true of the levels that were told before it
        queue(
            [state, problem, timeUs](LineListener& listener) { listener.stateTold(state, problem, timeUs); });
    }

    void failureTold(const DWording& text) override
    {
        queue([text](LineListener& listener) { listener.failureTold(text); });
    }

    bool hasRoom() const { return m_waiting.size() < c_mostWaiting; }

    void queue(Message message)
    {
        m_waiting.push_back(std::move(message));
        if (!m_sending) {
            m_sending = true;
            // What belongs to one event of the device goes together.
            handover::post(this, [this] { send(); });
        }
    }

    void send()
    {
        makeUp();
        handover::post(m_front, [batch = std::make_shared<const Batch>(std::exchange(m_waiting, {})),
                                 closings = m_closings, front = m_front, this] {
            if (front->take(*batch, closings)) {
                handover::post(this, [this] { taken(); });
            }
        });
    }

    void taken()
    {
        m_sending = !m_waiting.empty();
        if (m_sending) {
            send();
        }
    }

    /// Tells how much was left out, and the latest levels of the lines that had a change left out.
    void makeUp()
    {
        for (auto lost = m_lostEvents.cbegin(); lost != m_lostEvents.cend(); ++lost) {
            queue([id = lost.key(), count = *lost](LineListener& listener) {
                listener.eventsLeftOut(id, count);
            });
        }
        m_lostEvents.clear();
        if (m_lostChanges > 0) {
            queue([count = m_lostChanges, fromUs = m_lostFromUs, levels = std::exchange(m_lostLevels, {})](
                      LineListener& listener) { listener.changesLeftOut(count, fromUs, levels); });
            failureTold(changesLeftOutText(std::exchange(m_lostChanges, 0)));
        }
    }

    const LineDriverMaker m_maker;
    Front* const m_front;
    std::unique_ptr<DScheduler> m_scheduler;
    std::unique_ptr<LineDriver> m_driver;
    Batch m_waiting;
    bool m_sending = false;
    int m_closings = 0;
    QMap<quint64, quint64> m_lostEvents; ///< how many were left out, by their requests
    quint64 m_lostChanges = 0;
    qint64 m_lostFromUs = 0;           ///< when the first of them was
    QMap<int, LineLevel> m_lostLevels; ///< the latest level of each line that had a change left out
};

DeviceThread::DeviceThread(const LineDriverMaker& maker, LineListener* listener, bool realtime)
    : m_front(std::make_unique<Front>(listener))
    , m_worker(new Worker(maker, m_front.get()))
{
    m_worker->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_worker, [worker = m_worker, front = m_front.get()] {
        delete worker;
        handover::leave(front);
    });
    m_thread.setObjectName(QStringLiteral("device"));
    {
        const SignalsKeptAway kept;
        m_thread.start();
    }
    handover::post(m_worker, [worker = m_worker, realtime] { worker->start(realtime); });
}

DeviceThread::~DeviceThread()
{
    m_thread.quit();
    m_thread.wait();
    handover::join(m_front.get());
}

void DeviceThread::ask(std::function<void(LineDriver&)> question)
{
    handover::post(m_worker, [worker = m_worker, ask = std::move(question)] { ask(worker->driver()); });
}

void DeviceThread::open()
{
    ask([](LineDriver& driver) { driver.open(); });
}

void DeviceThread::close()
{
    ++m_front->closings;
    handover::post(m_worker, [worker = m_worker] { worker->close(); });
}

void DeviceThread::request(quint64 id, const QString& instruction, const QVariantMap& arguments)
{
    ask([=](LineDriver& driver) { driver.request(id, instruction, arguments); });
}

void DeviceThread::cancel(quint64 id)
{
    ask([id](LineDriver& driver) { driver.cancel(id); });
}

void DeviceThread::setInput(int line, int level)
{
    ask([line, level](LineDriver& driver) { driver.setInput(line, level); });
}

void DeviceThread::setPluggedIn(bool pluggedIn)
{
    ask([pluggedIn](LineDriver& driver) { driver.setPluggedIn(pluggedIn); });
}
