#include "unix_signals.h"

#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

std::atomic<int> readingEnd = {-1};
std::atomic<int> writingEnd = {-1};

void passOn(int number)
{
    const int interruptedError = errno;
    const auto byte = static_cast<char>(number);
    // A full pipe holds enough signals already.
    [[maybe_unused]] const ssize_t written = write(writingEnd, &byte, 1);
    errno = interruptedError;
}

/// Without SA_RESTART: a signal ends the wait for a reader that does not read.
void handle(int number)
{
    struct sigaction action = {};
    action.sa_handler = passOn;
    sigaction(number, &action, nullptr);
}

bool isIgnored(int number)
{
    struct sigaction action = {};
    return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

} // namespace

UnixSignals::UnixSignals(QObject* parent)
    : QObject(parent)
{
    if (pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // without a pipe, the signals end the process as ever
    }
    readingEnd = m_pipe[0];
    writingEnd = m_pipe[1];
    auto* notifier = new QSocketNotifier(m_pipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (read(m_pipe[0], &byte, 1) == 1) {
            Q_EMIT interrupted(byte);
        }
    });
    handle(SIGINT);
    handle(SIGTERM);
    if (!isIgnored(SIGHUP)) { // nohup
        handle(SIGHUP);
    }
}

UnixSignals::~UnixSignals()
{
    readingEnd = -1;
    writingEnd = -1;
    close(m_pipe[0]);
    close(m_pipe[1]);
}

int UnixSignals::waiting()
{
    return readingEnd;
}
