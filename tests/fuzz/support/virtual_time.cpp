#include "virtual_time.h"

#include "require.h"

#include <QCoreApplication>

#include <csignal>
#include <ctime>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr qint64 c_nsPerMs = 1000000;
constexpr qint64 c_nsPerSecond = 1000000000;

qint64 nowNs = 0;

} // namespace

void restartTime()
{
    nowNs = c_nsPerSecond;
}

void passTime(qint64 milliseconds)
{
    nowNs += milliseconds * c_nsPerMs;
    QCoreApplication::processEvents();
}

// These two take the places of the functions of the C library, for Qt as well.

extern "C" Q_DECL_EXPORT int clock_gettime(clockid_t clock, timespec* time) noexcept
{
    if (clock != CLOCK_MONOTONIC) {
        return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    }
    time->tv_sec = nowNs / c_nsPerSecond;
    time->tv_nsec = nowNs % c_nsPerSecond;
    return 0;
}

extern "C" Q_DECL_EXPORT int ppoll(pollfd* files, nfds_t count, const timespec* timeout, const sigset_t* mask)
{
    Q_UNUSED(mask)
    const timespec noWait{};
    const auto ready = static_cast<int>(syscall(SYS_ppoll, files, count, &noWait, nullptr, 0));
    if (ready == 0) {
        require(timeout != nullptr, "the event loop waits for something");
        nowNs += timeout->tv_sec * c_nsPerSecond + timeout->tv_nsec;
    }
    return ready;
}
