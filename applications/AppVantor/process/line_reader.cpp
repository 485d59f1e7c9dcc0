#include "line_reader.h"

#include <cerrno>
#include <unistd.h>

namespace {
constexpr int c_longestLine = 1 << 20;
}

LineReader::LineReader(int descriptor, const DWording& name, QObject* parent)
    : QObject(parent)
    , m_name(name)
    , m_descriptor(descriptor)
    , m_notifier(descriptor, QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, &LineReader::readMore);
}

void LineReader::readMore()
{
    constexpr std::size_t chunk = 65536;
    char buffer[chunk];
    const ssize_t count = read(m_descriptor, buffer, chunk);
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) {
        return;
    }
    if (count <= 0) {
        end(count == 0
                ? DWording()
                : wording("%1 cannot be read: %2").arg(m_name, DWording::told(qt_error_string(errno))));
        return;
    }
    int start = 0;
    const int searched = m_rest.size();
    m_rest.append(buffer, static_cast<int>(count));
    for (int end = m_rest.indexOf('\n', searched); end >= 0; end = m_rest.indexOf('\n', start)) {
        Q_EMIT lineRead(lineAt(start, end));
        start = end + 1;
    }
    m_rest.remove(0, start);
    if (m_rest.size() > c_longestLine) {
        m_rest.clear();
        end(wording("%1: expected lines of at most %2 bytes").arg(m_name, c_longestLine));
    } else if (start > 0) {
        m_notifier.setEnabled(false);
    }
}

/// By its length: what Qt makes of a byte array ends at the first zero byte.
QString LineReader::lineAt(int start, int end) const
{
    return QString::fromUtf8(m_rest.constData() + start, end - start);
}

void LineReader::resume()
{
    m_notifier.setEnabled(!m_ended);
}

void LineReader::end(const DWording& problem)
{
    m_ended = true;
    m_notifier.setEnabled(false);
    if (!m_rest.isEmpty()) {
        Q_EMIT lineRead(lineAt(0, m_rest.size()));
    }
    Q_EMIT ended(problem);
}
