#include "progress.h"

#include <process/diagnostics.h>
#include <process/status_line.h>

#include <algorithm>
#include <unistd.h>

namespace {
constexpr qint64 c_worthShowingMs = 500;
constexpr int c_redrawMs = 100;
constexpr int c_usualPulseMs = 1000;

QString seconds(qint64 milliseconds)
{
    return QString::number(static_cast<double>(milliseconds) / 1000.0, 'f', 1);
}

void clear()
{
    writeStatusLine("\r\033[K");
}

} // namespace

Progress::Progress(const Invocation& invocation, std::optional<double> seconds, const Output& output)
    : m_title(invocation.arguments.value(QStringLiteral("state"), invocation.command).toString())
{
    if (seconds) {
        m_totalMs = static_cast<qint64>(*seconds * 1000.0);
    } else if (m_title == QLatin1String("PULSE")) {
        m_totalMs = invocation.arguments.value(QStringLiteral("duration"), c_usualPulseMs).toInt();
    }
    if (m_totalMs < c_worthShowingMs || output.isJson() || isatty(STDOUT_FILENO) == 0 ||
        isatty(STDERR_FILENO) == 0) {
        m_totalMs = 0;
        return;
    }
    m_clock.start();
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { draw(); });
    m_timer.start(c_redrawMs);
    setStatusLine(clear, [this] { draw(); });
}

Progress::~Progress()
{
    if (m_totalMs > 0) {
        setStatusLine({}, {});
        clear();
    }
}

void Progress::draw() const
{
    constexpr int width = 30;
    const qint64 elapsed = std::min(m_clock.elapsed(), m_totalMs);
    const auto done = static_cast<int>(width * elapsed / m_totalMs);
    const QString bar = QString(done, QLatin1Char('#')) + QString(width - done, QLatin1Char('.'));
    writeStatusLine(QStringLiteral("\r\033[K%1 [%2] %3 of %4 s\r")
                        .arg(m_title, bar, seconds(elapsed), seconds(m_totalMs))
                        .toStdString());
}
