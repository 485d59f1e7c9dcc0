#include "output.h"

#include "diagnostics.h"
#include "status_line.h"

#include <fcntl.h>
#include <unistd.h>

namespace {
/// What events leave to results of what may wait for the reader: these are never left out.
constexpr std::size_t c_keptForResults = 1 << 20;

/// Its number stays taken.
void closeStandardOutput()
{
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
}

} // namespace

Output::Output(bool json, bool aside)
    : m_json(json)
    , m_aside(aside)
    , m_outlet(STDOUT_FILENO)
{
    connect(&m_outlet, &Outlet::roomAgain, this, &Output::roomAgain);
    connect(&m_outlet, &Outlet::failed, this, [this](int error) {
        if (!readerIsGone()) {
            diagnostic(QStringLiteral("standard output cannot be written: %1").arg(qt_error_string(error)));
        }
        Q_EMIT failed();
    });
    connect(&m_outlet, &Outlet::drained, this, closeStandardOutput);
}

void Output::write(const JsonMaker& json, const TextMaker& text)
{
    if (m_json) {
        object(json());
    } else {
        line(text().toStdString());
    }
}

bool Output::hasRoomForEvents() const
{
    return m_outlet.waiting() < Outlet::c_bound - c_keptForResults;
}

void Output::text(const QString& text)
{
    if (!m_json) {
        line(text.toStdString());
    }
}

void Output::json(const JsonMaker& json)
{
    if (m_json) {
        object(json());
    }
}

void Output::object(const Json& object)
{
    line(lineOf(object));
}

void Output::line(const std::string& line)
{
    if (m_aside) {
        writeMessageLine(line);
    } else if (!hasFailed()) {
        const StatusLineHider hider;
        m_outlet.write(line + '\n');
    }
}
