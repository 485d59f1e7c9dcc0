#include "vcd_trace.h"

#include "vcd_names.h"

#include <devices/line_device.h>
#include <plugin_management/d_tool.h>
#include <process/time_text.h>

#include <QCoreApplication>
#include <QFile>
#include <QHash>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr qint64 c_writeIntervalUs = 100000;
constexpr std::size_t c_fullBuffer = 1 << 16;

/// A pipe that nobody reads is not waited for. Returns -1, with errno, when file cannot be written.
int openForWriting(const QString& file)
{
    if (file == QLatin1String("-")) {
        return fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    }
    constexpr mode_t everybody = 0666;
    return open(QFile::encodeName(file).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC,
                everybody);
}

bool isRemoved(int descriptor)
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 0;
}

void appendNumber(std::string* text, qint64 number)
{
    std::array<char, std::numeric_limits<qint64>::digits10 + 2> digits;
    const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    text->append(digits.data(), static_cast<std::size_t>(end - digits.data()));
}

} // namespace

VcdTrace::VcdTrace(const LineDevice& device, QObject* parent)
    : QObject(parent)
    , m_device(device)
{
    connect(&device, &LineDevice::lineChanged, this, &VcdTrace::record);
    connect(&device, &LineDevice::changesLost, this, &VcdTrace::recordGap);
}

VcdTrace::~VcdTrace()
{
    end();
    if (m_file >= 0) {
        close(m_file); // the record had failed before
    }
}

DWording VcdTrace::begin(const QString& file, const std::vector<const DTool*>& tools)
{
    m_file = openForWriting(file);
    if (m_file < 0) {
        const DWording reason =
            errno == ENXIO ? wording("nobody reads this pipe") : DWording::told(qt_error_string(errno));
        return wording("%1: the trace cannot be written: %2").arg(file, reason);
    }
    m_fileName = file == QLatin1String("-") ? wording("standard output") : DWording::name(file);
    m_outlet = std::make_unique<Outlet>(m_file);
    connect(m_outlet.get(), &Outlet::failed, this, [this](int error) {
        fail(wording("the trace ends here: %1").arg(DWording::told(qt_error_string(error))));
    });
    connect(m_outlet.get(), &Outlet::roomAgain, this, &VcdTrace::endGap);
    connect(m_outlet.get(), &Outlet::drained, this, &VcdTrace::closeFile);
    m_startUs = m_device.scheduler()->now();
    m_buffer = "$date " + fullTime(m_device.scheduler()->wallClock(m_startUs)).toStdString() + " $end\n";
    m_buffer += "$version appvantor " + QCoreApplication::applicationVersion().toStdString() +
                " $end\n$timescale 1 us $end\n$scope module device $end\n";
    const QVector<DLine>& lines = m_device.lines();
    QSet<QString> names;
    for (int line = 0; line < lines.size(); ++line) {
        m_variables.push_back({vcdCode(line), lines.at(line).kind == DLine::Kind::Analog});
        appendVariable(line, vcdName(lines.at(line).name, &names));
    }
    m_buffer += "$upscope $end\n";
    QSet<QString> scopes = {QStringLiteral("device")};
    for (const DTool* tool : tools) {
        appendScope(*tool, vcdName(tool->objectName(), &scopes));
    }
    m_buffer += "$enddefinitions $end\n#0\n$dumpvars\n";
    appendAll();
    m_buffer += "$end\n";
    write();
    return m_problem;
}

void VcdTrace::appendVariable(int line, const QString& name)
{
    const Variable& variable = m_variables.at(static_cast<std::size_t>(line));
    m_buffer += variable.isReal ? "$var real 64 " : "$var wire 1 ";
    m_buffer += variable.code + ' ' + name.toStdString() + " $end\n";
}

/// Channels are further names of the lines that they are linked to: these share a code.
void VcdTrace::appendScope(const DTool& tool, const QString& name)
{
    QHash<QString, int> numbers;
    for (int line = 0; line < m_device.lines().size(); ++line) {
        numbers.insert(m_device.lines().at(line).name, line);
    }
    m_buffer += "$scope module " + name.toStdString() + " $end\n";
    QSet<QString> names;
    for (const DToolChannel& channel : tool.channels()) {
        const auto line = numbers.constFind(channel.link);
        if (line != numbers.constEnd()) {
            appendVariable(*line, vcdName(channel.id, &names));
        }
    }
    m_buffer += "$upscope $end\n";
}

Outlet* VcdTrace::finish()
{
    if (m_outlet != nullptr) {
        endGap();
        moveTo(m_device.scheduler()->now());
        appendTime();
        write();
    }
    m_device.scheduler()->cancel(std::exchange(m_writing, {}));
    return m_outlet.get();
}

DWording VcdTrace::end()
{
    Outlet::drain({finish()});
    return m_problem;
}

/// The outlet touches nothing any more once it has said that it is drained.
void VcdTrace::closeFile()
{
    if (m_outlet != nullptr && isRemoved(m_file)) {
        fail(wording("the trace is lost: the file was removed meanwhile"));
    }
    m_outlet.reset();
    close(std::exchange(m_file, -1));
}

void VcdTrace::record(int line, const LineLevel& level)
{
    if (m_outlet == nullptr) {
        return;
    }
    const bool later = moveTo(level.sinceUs);
    if (m_lost == 0 && later) {
        appendTime();
    }
    if (m_lost > 0 || !m_outlet->hasRoom()) {
        lose(1);
        return;
    }
    append(line, level);
    if (m_buffer.size() >= c_fullBuffer) {
        write();
    } else {
        writeLater();
    }
}

/// The time of a dump never goes back. Answers whether it has moved.
bool VcdTrace::moveTo(qint64 timeUs)
{
    const qint64 before = std::exchange(m_timeUs, std::max(m_timeUs, timeUs - m_startUs));
    return m_timeUs > before;
}

void VcdTrace::appendTime()
{
    m_buffer += '#';
    appendNumber(&m_buffer, m_timeUs);
    m_buffer += '\n';
}

void VcdTrace::append(int line, const LineLevel& level)
{
    const Variable& variable = m_variables.at(static_cast<std::size_t>(line));
    if (variable.isReal) {
        m_buffer += 'r';
    }
    if (level.known) {
        appendNumber(&m_buffer, level.level);
    } else {
        m_buffer += variable.isReal ? "nan" : "x";
    }
    if (variable.isReal) {
        m_buffer += ' ';
    }
    m_buffer += variable.code;
    m_buffer += '\n';
}

void VcdTrace::appendAll()
{
    for (int line = 0; line < m_device.lines().size(); ++line) {
        append(line, m_device.level(line));
    }
}

/// The device has left out changes, the last of them at untilUs.
void VcdTrace::recordGap(quint64 changes, qint64 fromUs, qint64 untilUs)
{
    if (m_outlet == nullptr) {
        return;
    }
    if (m_lost == 0 && moveTo(fromUs)) {
        appendTime();
    }
    lose(changes);
    moveTo(untilUs);
    if (m_outlet != nullptr && m_outlet->hasRoom()) {
        endGap();
    }
}

/// From the first change that is lost, no level is known.
void VcdTrace::lose(quint64 changes)
{
    const bool begins = m_lost == 0;
    m_lost += changes;
    if (begins) {
        m_buffer += "$dumpoff\n";
        for (int line = 0; line < m_device.lines().size(); ++line) {
            append(line, LineLevel());
        }
        m_buffer += "$end\n";
        write();
    }
}

/// The levels of now are those since the last change that was lost.
void VcdTrace::endGap()
{
    if (m_lost == 0) {
        return;
    }
    appendTime();
    m_buffer += "$comment " + std::to_string(std::exchange(m_lost, 0)) + " changes lost $end\n$dumpon\n";
    appendAll();
    m_buffer += "$end\n";
    writeLater();
}

void VcdTrace::writeLater()
{
    if (m_writing == DScheduler::Appointment()) {
        DScheduler* clock = m_device.scheduler();
        m_writing = clock->at(clock->now() + c_writeIntervalUs, [this] {
            m_writing = {};
            write();
        });
    }
}

/// Whole lines in one call: what a killed run leaves can be read.
void VcdTrace::write()
{
    if (m_outlet != nullptr) {
        m_outlet->write(std::exchange(m_buffer, {}));
    }
}

/// The outlet may be on the stack.
void VcdTrace::fail(const DWording& problem)
{
    m_problem = wording("%1: %2").arg(m_fileName, problem);
    m_buffer.clear();
    if (m_outlet != nullptr) {
        m_outlet.release()->deleteLater();
    }
    Q_EMIT failed(m_problem);
}
