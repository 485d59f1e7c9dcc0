#include "steady_clock.h"

#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr qint64 c_msPerSecond = 1000;
constexpr qint64 c_nsPerMs = 1000000;

qint64 currentMs = 1000 * c_msPerSecond;

} // namespace

qint64 steady_clock::nowMs()
{
    return currentMs;
}

void steady_clock::advanceMs(qint64 ms)
{
    currentMs += ms;
}

/// Takes the place of the C library's function in the whole process. Other clocks run on.
extern "C" Q_DECL_EXPORT int clock_gettime(clockid_t clock, timespec* time) noexcept
{
    if (clock != CLOCK_MONOTONIC) {
        return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    }
    time->tv_sec = currentMs / c_msPerSecond;
    time->tv_nsec = currentMs % c_msPerSecond * c_nsPerMs;
    return 0;
}
