#include "virtual_time.h"

#include "require.h"

#include <steady_clock.h>

#include <QCoreApplication>

#include <csignal>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

void passTime(qint64 milliseconds)
{
    steady_clock::advance(std::chrono::milliseconds(milliseconds));
    QCoreApplication::processEvents();
}

/// Takes the place of the C library's function, for Qt as well.
extern "C" Q_DECL_EXPORT int ppoll(pollfd* files, nfds_t count, const timespec* timeout, const sigset_t* mask)
{
    Q_UNUSED(mask)
    const timespec noWait{};
    const auto ready = static_cast<int>(syscall(SYS_ppoll, files, count, &noWait, nullptr, 0));
    if (ready == 0) {
        require(timeout != nullptr, "the event loop waits for something");
        steady_clock::advance(std::chrono::seconds(timeout->tv_sec) +
                              std::chrono::nanoseconds(timeout->tv_nsec));
    }
    return ready;
}
