#include <devices/line_device.h>

#include "line_request.h"

#include <limits>

namespace {
constexpr int c_binaryNumberBits = 64;
constexpr qint64 c_usPerMs = 1000;
} // namespace

LineDevice::LineDevice(const QString& name, Scheduler* scheduler, QObject* parent)
    : DDevice(name, parent)
    , m_scheduler(scheduler)
{}

LineDevice::~LineDevice()
{
    for (const Blink& blink : qAsConst(m_blinks)) {
        m_scheduler->cancel(blink.next);
    }
}

QVector<DLine> LineDevice::lines() const
{
    return m_lines;
}

int LineDevice::level(int line) const
{
    return m_levels.value(line);
}

qint64 LineDevice::now() const
{
    return m_scheduler->now();
}

bool LineDevice::hasSettableInputs() const
{
    return false;
}

void LineDevice::setInput(int line, int level)
{
    Q_UNUSED(line)
    Q_UNUSED(level)
}

int LineDevice::highestLevel(const DLine& line)
{
    return line.kind == DLine::Kind::Analog ? std::numeric_limits<quint16>::max() : 1;
}

void LineDevice::setLines(const QVector<DLine>& lines)
{
    m_lines = lines;
    m_levels.fill(0, lines.size());
    m_lineListeners.resize(static_cast<std::size_t>(lines.size()));
    m_bits.fill(-1, lines.size());
    int bit = 0;
    for (int line = 0; line < lines.size(); ++line) {
        m_lineNumbers.insert(lines.at(line).name, line);
        if (lines.at(line).kind == DLine::Kind::Digital && bit < c_binaryNumberBits) {
            m_bits[line] = bit++;
        }
    }
}

void LineDevice::lineChanged(int line, int level, qint64 timeUs)
{
    if (m_levels.at(line) == level) {
        return;
    }
    m_levels[line] = level;
    for (const quint64 listener : m_lineListeners.at(static_cast<std::size_t>(line))) {
        reply(listener, listenReply(line));
    }
    if (m_bits.at(line) >= 0) {
        m_binaryLevels ^= quint64{1} << static_cast<unsigned>(m_bits.at(line));
        for (const quint64 listener : m_allListeners) {
            reply(listener, allLinesReply());
        }
    }
    Q_EMIT levelChanged(line, level, timeUs);
}

int LineDevice::lineNamed(const QString& name) const
{
    return m_lineNumbers.value(name, -1);
}

void LineDevice::stopBlinking(int line)
{
    const auto blink = m_blinks.constFind(line);
    if (blink != m_blinks.constEnd()) {
        m_scheduler->cancel(blink->next);
        m_blinks.erase(blink);
    }
}

void LineDevice::handleRequest(quint64 id, const QString& instruction, const QVariantMap& arguments)
{
    if (instruction == QLatin1String("listenToAll")) {
        listenToAll(id);
        return;
    }
    const bool reads = instruction == QLatin1String("getValue");
    const bool listens = instruction == QLatin1String("listenEvents");
    const bool writes = instruction == QLatin1String("setValues") || instruction == QLatin1String("setBlink");
    if (!reads && !listens && !writes) {
        fail(id, QStringLiteral("unknown instruction \"%1\"").arg(instruction));
        return;
    }
    const QString channel = arguments.value(QStringLiteral("channel")).toString();
    const int line = lineNamed(channel);
    if (channel.isEmpty()) {
        fail(id, QStringLiteral("\"%1\" names no channel").arg(instruction));
    } else if (line < 0) {
        fail(id, QStringLiteral("unknown channel \"%1\"").arg(channel));
    } else if (reads) {
        readLine(id, line);
    } else if (listens) {
        listenToLine(id, line);
    } else {
        writeLine(id, instruction, line, arguments);
    }
}

void LineDevice::handleCancel(quint64 id)
{
    m_allListeners.erase(id);
    const auto listened = m_listenedLines.constFind(id);
    if (listened != m_listenedLines.constEnd()) {
        m_lineListeners.at(static_cast<std::size_t>(*listened)).erase(id);
        m_listenedLines.erase(listened);
    }
}

void LineDevice::readLine(quint64 id, int line)
{
    reply(id, {{QStringLiteral("value"), m_levels.at(line)}});
}

void LineDevice::writeLine(quint64 id, const QString& instruction, int line, const QVariantMap& arguments)
{
    const DLine& target = m_lines.at(line);
    if (target.direction == DLine::Direction::In) {
        fail(id, QStringLiteral("channel \"%1\" is an input and cannot be written").arg(target.name));
        return;
    }
    const bool blinks = instruction == QLatin1String("setBlink");
    QString problem;
    const std::optional<int> values = wholeArgument(arguments, QStringLiteral("values"), &problem);
    std::optional<int> onWidth = 0;
    std::optional<int> offWidth = 0;
    if (values && blinks) {
        onWidth = wholeArgument(arguments, QStringLiteral("pulseOnWidth"), &problem);
        offWidth =
            onWidth ? wholeArgument(arguments, QStringLiteral("pulseOffWidth"), &problem) : std::nullopt;
    }
    if (!values || !onWidth || !offWidth) {
        fail(id, QStringLiteral("\"%1\" of channel \"%2\": %3").arg(instruction, target.name, problem));
        return;
    }
    const int level = target.kind == DLine::Kind::Analog ? *values : (*values != 0 ? 1 : 0);
    const bool steadilyOff = *onWidth == 0 && *offWidth > 0;
    stopBlinking(line);
    problem = drive(line, steadilyOff ? 0 : level);
    if (!problem.isEmpty()) {
        fail(id, problem);
        return;
    }
    if (*onWidth > 0 && *offWidth > 0 && level > 0) {
        startBlinking(line, level, *onWidth * c_usPerMs, *offWidth * c_usPerMs);
    }
    reply(id, {{QStringLiteral("channel"), target.name}, {QStringLiteral("values"), level}});
}

void LineDevice::startBlinking(int line, int level, qint64 onUs, qint64 offUs)
{
    Blink blink;
    blink.level = level;
    blink.onUs = onUs;
    blink.periodUs = onUs + offUs;
    blink.startUs = m_scheduler->now();
    blink.next = m_scheduler->at(blink.startUs + onUs, [this, line] { blinkPhase(line); });
    m_blinks.insert(line, blink);
}

/// Every phase is reckoned from the start of the blinking, so that late calls do not add up; phases that were
/// missed altogether are left out.
void LineDevice::blinkPhase(int line)
{
    Blink& blink = m_blinks[line];
    const qint64 elapsed = m_scheduler->now() - blink.startUs;
    const qint64 cycleStart = blink.startUs + elapsed / blink.periodUs * blink.periodUs;
    const bool on = elapsed % blink.periodUs < blink.onUs;
    const qint64 nextUs = cycleStart + (on ? blink.onUs : blink.periodUs);
    const int level = on ? blink.level : 0;
    blink.next = m_scheduler->at(nextUs, [this, line] { blinkPhase(line); });
    if (!drive(line, level).isEmpty()) {
        stopBlinking(line);
    }
}

void LineDevice::listenToLine(quint64 id, int line)
{
    m_lineListeners.at(static_cast<std::size_t>(line)).insert(id);
    m_listenedLines.insert(id, line);
    reply(id, listenReply(line));
}

void LineDevice::listenToAll(quint64 id)
{
    m_allListeners.insert(id);
    reply(id, allLinesReply());
}

QVariantMap LineDevice::listenReply(int line) const
{
    return {{QStringLiteral("values"), QVariantList{m_levels.at(line)}}};
}

QVariantMap LineDevice::allLinesReply() const
{
    return {{QStringLiteral("value"), m_binaryLevels}};
}
