#include "output.h"

#include "terminal_frame.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

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
    const FramedWriting framed;
    std::fprintf(stderr, "appvantor: %s\n", text.toUtf8().constData());
}

void Output::line(const std::string& line)
{
    if (m_failed) {
        return;
    }
    const FramedWriting framed;
    const bool written = std::fwrite(line.data(), 1, line.size(), stdout) == line.size() &&
                         std::fputc('\n', stdout) != EOF && std::fflush(stdout) == 0;
    if (!written) {
        m_failed = true;
        diagnostic(QStringLiteral("standard output cannot be written: %1")
                       .arg(QString::fromUtf8(std::strerror(errno))));
    }
}
