#include <devices/line_engine.h>

#include "line_request.h"

namespace {
constexpr int c_binaryNumberBits = 64;
constexpr qint64 c_usPerMs = 1000;
} // namespace

LineEngine::LineEngine(const QVector<DLine>& lines, DScheduler* scheduler, LineListener* listener)
    : m_lines(lines)
    , m_scheduler(scheduler)
    , m_listener(listener)
    , m_levels(lines.size())
    , m_bits(lines.size(), -1)
    , m_lineListeners(static_cast<std::size_t>(lines.size()))
{
    for (int line = 0; line < lines.size(); ++line) {
        m_lineNumbers.insert(lines.at(line).name, line);
        if (lines.at(line).kind == DLine::Kind::Digital && m_binaryLines++ < c_binaryNumberBits) {
            m_bits[line] = m_binaryLines - 1;
        }
    }
}

LineEngine::~LineEngine()
{
    stopAllBlinking();
}

void LineEngine::close()
{
    stopAllBlinking();
    m_state = DDevice::State::Closed;
    m_problem = {};
}

void LineEngine::setInput(int line, int level)
{
    Q_UNUSED(line)
    Q_UNUSED(level)
}

void LineEngine::setPluggedIn(bool pluggedIn)
{
    Q_UNUSED(pluggedIn)
}

void LineEngine::setConnected(qint64 sinceUs)
{
    m_state = DDevice::State::Connected;
    m_problem = {};
    for (int line = 0; line < m_lines.size(); ++line) {
        m_levels[line].sinceUs = sinceUs;
        m_listener->lineTold(line, m_levels.at(line));
    }
    m_listener->stateTold(m_state, m_problem, m_scheduler->now());
}

void LineEngine::setUnreachable(const DWording& problem)
{
    stopAllBlinking();
    m_state = DDevice::State::Unreachable;
    m_problem = problem;
    m_listener->stateTold(m_state, m_problem, m_scheduler->now());
}

void LineEngine::setLevel(int line, int level, qint64 timeUs)
{
    if (has(line, level)) {
        return;
    }
    take(line, {level, timeUs, true});
    if (isConnected()) {
        m_listener->lineTold(line,
                             m_levels.at(line)); // the display hears of it before those who asked for it
        tellRequests(line);
    }
}

void LineEngine::setLevelsAfterLoss(quint64 count, qint64 fromUs, const QMap<int, LineLevel>& levels)
{
    if (isConnected()) {
        m_listener->changesLeftOut(count, fromUs, levels);
    }
    for (auto level = levels.cbegin(); level != levels.cend(); ++level) {
        const bool changes = !has(level.key(), level->level);
        take(level.key(), *level);
        if (changes && isConnected()) {
            tellRequests(level.key());
        }
    }
}

bool LineEngine::has(int line, int level) const
{
    return m_levels.at(line).known && m_levels.at(line).level == level;
}

void LineEngine::take(int line, const LineLevel& level)
{
    m_levels[line] = level;
    m_unreadable.remove(line);
    const int bit = m_bits.at(line);
    if (bit >= 0) {
        const quint64 mask = quint64{1} << static_cast<unsigned>(bit);
        m_binaryLevels = level.level != 0 ? m_binaryLevels | mask : m_binaryLevels & ~mask;
    }
}

void LineEngine::setUnreadable(int line, const DFailure& failure)
{
    if (m_unreadable.contains(line)) {
        return;
    }
    m_unreadable.insert(line, failure);
    m_levels[line] = {0, m_scheduler->now(), false};
    m_listener->lineTold(line, m_levels.at(line));
    m_listener->failureTold(failure.text);
    std::set<quint64> listeners = m_lineListeners.at(static_cast<std::size_t>(line));
    if (m_bits.at(line) >= 0) {
        listeners.insert(m_allListeners.cbegin(), m_allListeners.cend());
    }
    for (const quint64 id : listeners) {
        cancel(id);
        m_listener->requestRefused(id, failure);
    }
}

/// Answers whether it did.
bool LineEngine::refuseUnreadable(quint64 id, int line)
{
    const auto failure = m_unreadable.constFind(line);
    if (failure == m_unreadable.constEnd()) {
        return false;
    }
    m_listener->requestRefused(id, *failure);
    return true;
}

void LineEngine::tellRequests(int line)
{
    const LineLevel& level = m_levels.at(line);
    for (const quint64 id : m_lineListeners.at(static_cast<std::size_t>(line))) {
        m_listener->eventTold(id, lineReply(line), level.sinceUs);
    }
    if (m_bits.at(line) >= 0) {
        for (const quint64 id : m_allListeners) {
            m_listener->eventTold(id, allLinesReply(), level.sinceUs);
        }
    }
}

int LineEngine::lineNamed(const QString& name) const
{
    return m_lineNumbers.value(name, -1);
}

void LineEngine::refuse(quint64 id, const DWording& reason)
{
    m_listener->requestRefused(id, {DFailure::Kind::RefusedByDevice, reason});
}

void LineEngine::request(quint64 id, const QString& instruction, const QVariantMap& arguments)
{
    if (!isConnected()) {
        m_listener->requestRefused(id, unreachable());
        return;
    }
    const bool reads = instruction == QLatin1String("getValue");
    const bool writes =
        !reads && (instruction == QLatin1String("setValues") || instruction == QLatin1String("setBlink"));
    const bool listens = !reads && !writes && instruction == QLatin1String("listenEvents");
    if (!reads && !writes && !listens) {
        if (instruction == QLatin1String("listenToAll")) {
            listenToAll(id);
            return;
        }
        refuse(id, wording(R"(unknown instruction "%1")").arg(instruction));
        return;
    }
    const QString channel = arguments.value(QStringLiteral("channel")).toString();
    const int line = lineNamed(channel);
    if (channel.isEmpty()) {
        refuse(id, wording(R"("%1" names no channel)").arg(instruction));
    } else if (line < 0) {
        refuse(id, wording(R"(unknown channel "%1")").arg(channel));
    } else if (reads) {
        read(id, line);
    } else if (listens) {
        listenToLine(id, line);
    } else {
        write(id, instruction, line, arguments);
    }
}

void LineEngine::cancel(quint64 id)
{
    m_allListeners.erase(id);
    const auto listened = m_listenedLines.constFind(id);
    if (listened != m_listenedLines.constEnd()) {
        m_lineListeners.at(static_cast<std::size_t>(*listened)).erase(id);
        m_listenedLines.erase(listened);
    }
}

void LineEngine::read(quint64 id, int line)
{
    if (refuseUnreadable(id, line)) {
        return;
    }
    m_listener->requestAnswered(id, {{QStringLiteral("value"), level(line)}}, m_scheduler->now());
}

void LineEngine::write(quint64 id, const QString& instruction, int line, const QVariantMap& arguments)
{
    const DLine& target = m_lines.at(line);
    if (target.direction == DLine::Direction::In) {
        refuse(id, wording(R"(channel "%1" is an input and cannot be written)").arg(target.name));
        return;
    }
    const bool blinks = instruction == QLatin1String("setBlink");
    DWording problem;
    const std::optional<int> values = wholeArgument(arguments, QStringLiteral("values"), &problem);
    std::optional<int> onWidth = 0;
    std::optional<int> offWidth = 0;
    if (values && blinks) {
        onWidth = wholeArgument(arguments, QStringLiteral("pulseOnWidth"), &problem);
        offWidth =
            onWidth ? wholeArgument(arguments, QStringLiteral("pulseOffWidth"), &problem) : std::nullopt;
    }
    if (!values || !onWidth || !offWidth) {
        refuse(id, wording(R"("%1" of channel "%2": %3)").arg(instruction, target.name, problem));
        return;
    }
    const int level = target.kind == DLine::Kind::Analog ? *values : (*values != 0 ? 1 : 0);
    const bool steadilyOff = *onWidth == 0 && *offWidth > 0;
    stopBlinking(line);
    const qint64 timeUs = m_scheduler->now();
    const DFailure failure = drive(line, steadilyOff ? 0 : level, timeUs);
    if (failure) {
        m_listener->requestRefused(id, failure);
        return;
    }
    if (*onWidth > 0 && *offWidth > 0 && level > 0) {
        startBlinking(line, level, *onWidth * c_usPerMs, *offWidth * c_usPerMs, timeUs);
    }
    m_listener->requestAnswered(
        id, {{QStringLiteral("channel"), target.name}, {QStringLiteral("values"), level}}, timeUs);
}

void LineEngine::startBlinking(int line, int level, qint64 onUs, qint64 offUs, qint64 timeUs)
{
    Blink blink;
    blink.level = level;
    blink.onUs = onUs;
    blink.periodUs = onUs + offUs;
    blink.startUs = timeUs;
    blink.next = m_scheduler->at(blink.startUs + onUs, [this, line] { blinkPhase(line); });
    m_blinks.insert(line, blink);
    m_listener->blinkingTold(line, true);
}

void LineEngine::stopBlinking(int line)
{
    const auto blink = m_blinks.constFind(line);
    if (blink != m_blinks.constEnd()) {
        m_scheduler->cancel(blink->next);
        m_blinks.erase(blink);
        m_listener->blinkingTold(line, false);
    }
}

void LineEngine::stopAllBlinking()
{
    for (const Blink& blink : qAsConst(m_blinks)) {
        m_scheduler->cancel(blink.next);
    }
    m_blinks.clear();
}

/// Every phase is reckoned from the start of the blinking, so that late calls do not add up; phases that were
/// missed altogether are left out.
void LineEngine::blinkPhase(int line)
{
    Blink& blink = m_blinks[line];
    const qint64 timeUs = m_scheduler->now();
    const qint64 elapsed = timeUs - blink.startUs;
    const qint64 cycleStart = blink.startUs + elapsed / blink.periodUs * blink.periodUs;
    const bool on = elapsed % blink.periodUs < blink.onUs;
    const qint64 nextUs = cycleStart + (on ? blink.onUs : blink.periodUs);
    const int level = on ? blink.level : 0;
    blink.next = m_scheduler->at(nextUs, [this, line] { blinkPhase(line); });
    const DFailure failure = drive(line, level, timeUs);
    if (failure) {
        stopBlinking(line);
    }
    if (failure && failure.kind != DFailure::Kind::DeviceUnreachable) { // else its loss is told, once
        m_listener->failureTold(
            wording(R"(line "%1" blinks no more: %2)").arg(m_lines.at(line).name, failure.text));
    }
}

void LineEngine::listenToLine(quint64 id, int line)
{
    if (refuseUnreadable(id, line)) {
        return;
    }
    m_lineListeners.at(static_cast<std::size_t>(line)).insert(id);
    m_listenedLines.insert(id, line);
    m_listener->requestAnswered(id, lineReply(line), m_scheduler->now());
}

void LineEngine::listenToAll(quint64 id)
{
    if (m_binaryLines > c_binaryNumberBits) {
        refuse(id, wording(R"("listenToAll" tells %1 binary lines at most, the device has %2)")
                       .arg(c_binaryNumberBits)
                       .arg(m_binaryLines));
        return;
    }
    for (auto line = m_unreadable.cbegin(); line != m_unreadable.cend(); ++line) {
        if (m_bits.at(line.key()) >= 0 && refuseUnreadable(id, line.key())) {
            return;
        }
    }
    m_allListeners.insert(id);
    m_listener->requestAnswered(id, allLinesReply(), m_scheduler->now());
}

QVariantMap LineEngine::lineReply(int line) const
{
    return {{QStringLiteral("values"), QVariantList{level(line)}}};
}

QVariantMap LineEngine::allLinesReply() const
{
    return {{QStringLiteral("value"), m_binaryLevels}};
}
