#include "vcd_trace.h"

#include <devices/line_device.h>

#include <QDeadlineTimer>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <limits>
#include <poll.h>
#include <sys/stat.h>

namespace {

constexpr int c_writeIntervalMs = 100;
constexpr std::size_t c_fullBuffer = 1 << 16;
constexpr int c_patienceMs = 3000;

/// A pipe that nobody reads is not waited for. Returns -1, with errno, when file cannot be written.
int openForWriting(const QString& file)
{
    constexpr mode_t everybody = 0666;
    return open(QFile::encodeName(file).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC,
                everybody);
}

/// Waits until more can be written: a pipe fills up while its reader is busy. False when it stays so. A
/// signal does not cut this short: what it ends is to be in the trace.
bool waitForRoom(int descriptor)
{
    const QDeadlineTimer deadline(c_patienceMs);
    struct pollfd waiting = {descriptor, POLLOUT, 0};
    int ready = 0;
    do {
        ready = poll(&waiting, 1, static_cast<int>(deadline.remainingTime()));
    } while (ready == -1 && errno == EINTR);
    return ready == 1;
}

bool isRemoved(int descriptor)
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 0;
}

/// The short code of a line: its number in the printable characters.
std::string codeOf(int line)
{
    constexpr int first = '!';
    constexpr int count = '~' - '!' + 1;
    std::string code;
    for (int rest = line; code.empty() || rest > 0; rest /= count) {
        code += static_cast<char>(first + rest % count);
    }
    return code;
}

void appendNumber(std::string* text, qint64 number)
{
    std::array<char, std::numeric_limits<qint64>::digits10 + 2> digits;
    const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    text->append(digits.data(), static_cast<std::size_t>(end - digits.data()));
}

/// A name in a dump: no blanks, none twice, and nothing that reads as a word of the dump.
QString nameOf(const DLine& line, QSet<QString>* taken)
{
    QString name = line.name;
    name.replace(QRegularExpression(QStringLiteral("[\\s$]")), QStringLiteral("_"));
    while (taken->contains(name)) {
        name += QLatin1Char('_');
    }
    taken->insert(name);
    return name;
}

} // namespace

VcdTrace::VcdTrace(const LineDevice& device, QObject* parent)
    : QObject(parent)
    , m_device(device)
{
    connect(&device, &DDevice::levelChanged, this, &VcdTrace::record);
    connect(&m_writing, &QTimer::timeout, this, &VcdTrace::write);
    m_writing.setSingleShot(true);
    m_writing.setInterval(c_writeIntervalMs);
}

VcdTrace::~VcdTrace()
{
    end();
}

QString VcdTrace::begin(const QString& file)
{
    const int descriptor = openForWriting(file);
    if (descriptor < 0) {
        const QString reason =
            errno == ENXIO ? QStringLiteral("nobody reads this pipe") : qt_error_string(errno);
        return QStringLiteral("%1: the trace cannot be written: %2").arg(file, reason);
    }
    m_fileName = file;
    m_file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle);
    m_buffer = "$version appvantor $end\n$timescale 1 us $end\n$scope module device $end\n";
    const QVector<DLine> lines = m_device.lines();
    QSet<QString> names;
    for (int line = 0; line < lines.size(); ++line) {
        const Variable variable = {codeOf(line), lines.at(line).kind == DLine::Kind::Analog};
        m_buffer += variable.isReal ? "$var real 64 " : "$var wire 1 ";
        m_buffer += variable.code + ' ' + nameOf(lines.at(line), &names).toStdString() + " $end\n";
        m_variables.push_back(variable);
    }
    m_buffer += "$upscope $end\n$enddefinitions $end\n#0\n$dumpvars\n";
    for (int line = 0; line < lines.size(); ++line) {
        append(line, m_device.level(line));
    }
    m_buffer += "$end\n";
    write();
    return m_problem;
}

QString VcdTrace::end()
{
    if (m_file.isOpen()) {
        appendTime(std::max(m_timeUs, m_device.now()));
        write();
    }
    if (m_file.isOpen()) {
        if (isRemoved(m_file.handle())) {
            fail(QStringLiteral("the trace is lost: the file was removed meanwhile"));
        }
        m_file.close();
    }
    return m_problem;
}

void VcdTrace::record(int line, int level, qint64 timeUs)
{
    if (!m_file.isOpen()) {
        return;
    }
    if (timeUs > m_timeUs) {
        m_timeUs = timeUs;
        appendTime(timeUs);
    }
    append(line, level);
    if (m_buffer.size() >= c_fullBuffer) {
        write();
    } else if (!m_writing.isActive()) {
        m_writing.start();
    }
}

void VcdTrace::appendTime(qint64 timeUs)
{
    m_buffer += '#';
    appendNumber(&m_buffer, timeUs);
    m_buffer += '\n';
}

void VcdTrace::append(int line, int level)
{
    const Variable& variable = m_variables.at(static_cast<std::size_t>(line));
    if (variable.isReal) {
        m_buffer += 'r';
    }
    appendNumber(&m_buffer, level);
    if (variable.isReal) {
        m_buffer += ' ';
    }
    m_buffer += variable.code;
    m_buffer += '\n';
}

/// Whole lines in one call: what a killed run leaves can be read.
void VcdTrace::write()
{
    while (!m_buffer.empty()) {
        if (!waitForRoom(m_file.handle())) {
            fail(QStringLiteral("the trace ends here: its reader does not keep up"));
            return;
        }
        const qint64 written = m_file.write(m_buffer.data(), static_cast<qint64>(m_buffer.size()));
        if (written <= 0) {
            fail(QStringLiteral("the trace ends here: %1").arg(m_file.errorString()));
            return;
        }
        m_buffer.erase(0, static_cast<std::size_t>(written));
    }
}

void VcdTrace::fail(const QString& problem)
{
    m_problem = QStringLiteral("%1: %2").arg(m_fileName, problem);
    m_buffer.clear();
    m_file.close();
    Q_EMIT failed(m_problem);
}
