#include "vcd_trace.h"

#include <devices/line_device.h>

#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace {

constexpr int c_writeIntervalMs = 100;
constexpr int c_fullBuffer = 1 << 16;

/// The short code of a line: its number in the printable characters.
QByteArray codeOf(int line)
{
    constexpr int first = '!';
    constexpr int count = '~' - '!' + 1;
    QByteArray code;
    for (int rest = line; code.isEmpty() || rest > 0; rest /= count) {
        code.append(static_cast<char>(first + rest % count));
    }
    return code;
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
    m_file.setFileName(file);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        return QStringLiteral("%1: the trace cannot be written: %2").arg(file, m_file.errorString());
    }
    m_buffer = "$version appvantor $end\n$timescale 1 us $end\n$scope module device $end\n";
    const QVector<DLine> lines = m_device.lines();
    QSet<QString> names;
    for (int line = 0; line < lines.size(); ++line) {
        m_codes.append(codeOf(line));
        m_reals.append(lines.at(line).kind == DLine::Kind::Analog);
        m_buffer += m_reals.last() ? "$var real 64 " : "$var wire 1 ";
        m_buffer += m_codes.last() + ' ' + nameOf(lines.at(line), &names).toUtf8() + " $end\n";
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
        m_buffer += '#' + QByteArray::number(std::max(m_timeUs, m_device.now())) + '\n';
        write();
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
        m_buffer += '#' + QByteArray::number(timeUs) + '\n';
    }
    append(line, level);
    if (m_buffer.size() >= c_fullBuffer) {
        write();
    } else if (!m_writing.isActive()) {
        m_writing.start();
    }
}

void VcdTrace::append(int line, int level)
{
    if (m_reals.at(line)) {
        m_buffer += 'r' + QByteArray::number(level) + ' ';
    } else {
        m_buffer += QByteArray::number(level);
    }
    m_buffer += m_codes.at(line) + '\n';
}

/// Whole lines in one call: what a killed run leaves can be read.
void VcdTrace::write()
{
    while (!m_buffer.isEmpty()) {
        const qint64 written = m_file.write(m_buffer);
        if (written <= 0) {
            m_problem =
                QStringLiteral("%1: the trace ends here: %2").arg(m_file.fileName(), m_file.errorString());
            m_buffer.clear();
            m_file.close();
            Q_EMIT failed(m_problem);
            return;
        }
        m_buffer.remove(0, static_cast<int>(written));
    }
}
