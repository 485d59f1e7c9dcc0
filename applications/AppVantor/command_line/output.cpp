#include "output.h"

#include "terminal_frame.h"

#include <bench/unix_signals.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <poll.h>
#include <string_view>
#include <unistd.h>

namespace {

/// Waits until a pipe or terminal takes more; false, with errno, when a signal came before.
bool waitForRoom()
{
    std::array<struct pollfd, 2> waiting = {
        {{STDOUT_FILENO, POLLOUT, 0}, {UnixSignals::waiting(), POLLIN, 0}}};
    if (poll(waiting.data(), waiting.size(), -1) > 0 && waiting[0].revents == 0) {
        errno = EINTR;
    }
    return waiting[0].revents != 0;
}

/// Writes to standard output, past any buffer: what could not be written must not be tried again at the end.
/// False, with errno, when that fails, or when a signal came while a reader kept it waiting.
bool writeOut(std::string_view text)
{
    constexpr std::size_t longestPiece = PIPE_BUF; // no more is sure not to wait where there is room
    while (!text.empty()) {
        if (!waitForRoom()) {
            return false;
        }
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), std::min(text.size(), longestPiece));
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EAGAIN) {
            return false;
        }
    }
    return true;
}

} // namespace

void Output::write(const Json& json, const QString& text)
{
    // Text from outside may hold half a surrogate pair; it is replaced, never thrown at.
    line(m_json ? json.dump(-1, ' ', false, Json::error_handler_t::replace) : text.toStdString());
}

void Output::text(const QString& text)
{
    if (!m_json) {
        line(text.toStdString());
    }
}

void Output::diagnostic(const QString& text)
{
    const std::string line = "appvantor: " + text.toStdString() + '\n'; // whole, whatever is in it
    const FramedWriting framed;
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void Output::line(const std::string& line)
{
    if (m_failed) {
        return;
    }
    const FramedWriting framed;
    if (!writeOut(line + '\n')) {
        m_failed = true;
        diagnostic(QStringLiteral("standard output cannot be written: %1")
                       .arg(QString::fromUtf8(std::strerror(errno))));
    }
}
