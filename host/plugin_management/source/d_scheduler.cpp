#include <plugin_management/d_scheduler.h>

#include <QSocketNotifier>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <sys/timerfd.h>
#include <unistd.h>

namespace {

constexpr qint64 c_usPerSecond = 1000000;
constexpr qint64 c_nsPerUs = 1000;

qint64 microseconds(clockid_t clock)
{
    timespec time = {};
    clock_gettime(clock, &time);
    return time.tv_sec * c_usPerSecond + time.tv_nsec / c_nsPerUs;
}

/// Settled at the first call, for all threads of the process.
qint64 wallClockOffset()
{
    static const qint64 offset = microseconds(CLOCK_REALTIME) - microseconds(CLOCK_MONOTONIC);
    return offset;
}

} // namespace

DScheduler::DScheduler(qint64 wallClockOffsetUs, QObject* parent)
    : QObject(parent)
    , m_wallClockOffsetUs(wallClockOffsetUs)
{}

DScheduler::~DScheduler() = default;

DScheduler::Appointment DScheduler::at(qint64 timeUs, Action action)
{
    const Appointment appointment(timeUs, ++m_lastNumber);
    const auto made = m_appointments.emplace(appointment, std::move(action)).first;
    if (made == m_appointments.begin()) {
        rearm();
    }
    return appointment;
}

void DScheduler::cancel(Appointment appointment)
{
    m_appointments.erase(appointment);
}

bool DScheduler::hasAppointments() const
{
    return !m_appointments.empty();
}

qint64 DScheduler::earliest() const
{
    return m_appointments.begin()->first.first;
}

bool DScheduler::isDue(qint64 timeUs, quint64 last) const
{
    return hasAppointments() && earliest() <= timeUs && m_appointments.begin()->first.second <= last;
}

void DScheduler::runEarliest()
{
    const Action action = std::move(m_appointments.begin()->second);
    m_appointments.erase(m_appointments.begin());
    action();
}

/// The timer is one of the kernel's, which keeps microseconds where the event loop's own keep milliseconds.
struct DSteadyScheduler::Private
{
    Private()
        : timer(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC))
        , notifier(timer, QSocketNotifier::Read)
    {
        if (timer < 0) {
            qFatal("the system grants no timer: %s", qPrintable(qt_error_string(errno)));
        }
    }
    ~Private()
    {
        notifier.setEnabled(false);
        close(timer);
    }
    Q_DISABLE_COPY(Private)

    const int timer;
    QSocketNotifier notifier;
};

DSteadyScheduler::DSteadyScheduler(QObject* parent)
    : DScheduler(wallClockOffset(), parent)
    , d(std::make_unique<Private>())
{
    connect(&d->notifier, &QSocketNotifier::activated, this, &DSteadyScheduler::runDue);
}

DSteadyScheduler::~DSteadyScheduler() = default;

qint64 DSteadyScheduler::now() const
{
    return microseconds(CLOCK_MONOTONIC);
}

void DSteadyScheduler::rearm()
{
    const qint64 due = std::max<qint64>(earliest(), 1); // 0 would stop the timer
    itimerspec setting = {};
    setting.it_value.tv_sec = due / c_usPerSecond;
    setting.it_value.tv_nsec = due % c_usPerSecond * c_nsPerUs;
    timerfd_settime(d->timer, TFD_TIMER_ABSTIME, &setting, nullptr);
}

/// What falls due or is made while the others run waits for the next pass of the event loop, so that an
/// action that makes its successor at once, for a time that has passed even, does not keep the loop.
void DSteadyScheduler::runDue()
{
    quint64 expirations = 0;
    if (read(d->timer, &expirations, sizeof(expirations)) < 0) {
        return; // set anew since it was seen
    }
    const qint64 due = now();
    const quint64 last = lastNumber();
    while (isDue(due, last)) {
        runEarliest();
    }
    if (hasAppointments()) {
        rearm();
    }
}
