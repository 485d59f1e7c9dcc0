#include "unix_signals.h"

#include <QSocketNotifier>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

int signalPipe[2] = {-1, -1};

void passOn(int number)
{
    const auto byte = static_cast<char>(number);
    // A full pipe holds enough signals already.
    [[maybe_unused]] const ssize_t written = write(signalPipe[1], &byte, 1);
}

void handle(int number, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(number, &action, nullptr);
}

} // namespace

UnixSignals::UnixSignals(QObject* parent)
    : QObject(parent)
{
    if (pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // without a pipe, the signals end the process as ever
    }
    auto* notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (read(signalPipe[0], &byte, 1) == 1) {
            Q_EMIT interrupted(byte);
        }
    });
    handle(SIGINT, passOn);
    handle(SIGTERM, passOn);
}

UnixSignals::~UnixSignals()
{
    handle(SIGINT, SIG_DFL);
    handle(SIGTERM, SIG_DFL);
    close(signalPipe[0]);
    close(signalPipe[1]);
}
