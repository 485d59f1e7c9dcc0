#include "unix_signals.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

/// Lasts as long as the process: a signal may come at its very end.
struct Pipe
{
    int readingEnd = -1;
    int writingEnd = -1;
};
Pipe signalPipe;

void passOn(int number)
{
    const int interruptedError = errno;
    const auto byte = static_cast<char>(number);
    // A full pipe holds enough signals already.
    [[maybe_unused]] const ssize_t written = write(signalPipe.writingEnd, &byte, 1);
    errno = interruptedError;
}

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
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // without a pipe, the signals end the process as ever
    }
    signalPipe = {ends[0], ends[1]};
    auto* notifier = new QSocketNotifier(signalPipe.readingEnd, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (read(signalPipe.readingEnd, &byte, 1) == 1) {
            Q_EMIT interrupted(byte);
        }
    });
    handle(SIGINT);
    handle(SIGTERM);
    if (!isIgnored(SIGHUP)) { // nohup
        handle(SIGHUP);
    }
}

int UnixSignals::waiting()
{
    return signalPipe.readingEnd;
}
