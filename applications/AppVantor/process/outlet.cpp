#include "outlet.h"

#include "unix_signals.h"

#include <QCoreApplication>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

/// Only pipes and terminals: a file that is opened anew would be written from its start.
int openAnew(int descriptor)
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || (!S_ISFIFO(status.st_mode) && isatty(descriptor) == 0)) {
        return -1;
    }
    const std::string path = "/proc/self/fd/" + std::to_string(descriptor);
    return open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
}

bool mayWait(int descriptor)
{
    struct stat status = {};
    const bool isRegular = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    return !isRegular && (fcntl(descriptor, F_GETFL) & O_NONBLOCK) == 0;
}

bool hasRoomFor(int descriptor)
{
    struct pollfd waiting = {descriptor, POLLOUT, 0};
    return poll(&waiting, 1, 0) > 0;
}

} // namespace

Outlet::Outlet(int descriptor, QObject* parent)
    : QObject(parent)
    , m_given(descriptor)
    , m_own(openAnew(descriptor))
    , m_mayWait(mayWait(target()))
{}

Outlet::~Outlet()
{
    closeOwn();
}

void Outlet::closeOwn()
{
    if (m_own >= 0) {
        close(std::exchange(m_own, -1));
    }
}

void Outlet::write(std::string_view text)
{
    if (m_error == 0) {
        m_waiting += text;
        flush();
    }
}

/// Where writing may wait, no more is written at a time than is sure not to where there is room.
void Outlet::flush()
{
    constexpr std::size_t largestRest = 1 << 20;
    const bool hadRoom = hasRoom();
    while (m_error == 0 && m_written < m_waiting.size()) {
        if (m_mayWait && !hasRoomFor(target())) {
            break;
        }
        const std::size_t left = m_waiting.size() - m_written;
        const std::size_t piece = m_mayWait ? std::min<std::size_t>(left, PIPE_BUF) : left;
        const ssize_t written = ::write(target(), m_waiting.data() + m_written, piece);
        if (written >= 0) {
            m_written += static_cast<std::size_t>(written);
        } else if (errno == EAGAIN) {
            break;
        } else if (errno != EINTR) {
            fail(errno);
        }
    }
    if (m_written == m_waiting.size()) {
        m_waiting.clear();
        m_written = 0;
        m_notifier.reset();
    } else if (m_written > largestRest) {
        m_waiting.erase(0, std::exchange(m_written, 0));
    }
    if (!m_waiting.empty() && m_notifier == nullptr && QCoreApplication::instance() != nullptr) {
        m_notifier = std::make_unique<QSocketNotifier>(target(), QSocketNotifier::Write);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, &Outlet::flush, Qt::QueuedConnection);
    }
    if (!hadRoom && hasRoom()) {
        Q_EMIT roomAgain();
    }
}

void Outlet::fail(int error)
{
    m_error = error;
    m_waiting.clear();
    m_written = 0;
    Q_EMIT failed(error);
}

void Outlet::drain(std::vector<Outlet*> outlets)
{
    const auto isDone = [](Outlet* outlet) {
        if (outlet == nullptr) {
            return true;
        }
        outlet->flush();
        if (outlet->waiting() > 0) {
            return false;
        }
        outlet->closeOwn();
        Q_EMIT outlet->drained();
        return true;
    };
    for (;;) {
        outlets.erase(std::remove_if(outlets.begin(), outlets.end(), isDone), outlets.end());
        if (outlets.empty()) {
            return;
        }
        std::vector<struct pollfd> events = {{UnixSignals::waiting(), POLLIN, 0}};
        for (const Outlet* outlet : outlets) {
            events.push_back({outlet->target(), POLLOUT, 0});
        }
        poll(events.data(), events.size(), -1); // looks again where another signal ends it
        if (events.front().revents != 0) {
            for (Outlet* outlet : outlets) {
                outlet->fail(EINTR);
            }
        }
    }
}
