#include "output.h"

#include "terminal_frame.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <poll.h>
#include <string_view>
#include <unistd.h>

namespace {

/// Waits until a pipe or terminal that does not block takes more; false when a signal came.
bool waitForRoom()
{
    struct pollfd waiting = {STDOUT_FILENO, POLLOUT, 0};
    return poll(&waiting, 1, -1) == 1;
}

/// Writes to standard output, past any buffer: what could not be written must not be tried again at the end.
/// False, with errno, when that fails, or when a signal came while a reader kept it waiting.
bool writeOut(std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EAGAIN || !waitForRoom()) {
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
