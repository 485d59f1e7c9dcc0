#include "held_lines.h"

#include <QSet>

#include <algorithm>
#include <ctime>
#include <utility>

namespace {

using Clock = GpioLineSettings::Clock;

constexpr qint64 c_nsPerUs = 1000;

qint64 nsOf(clockid_t clock)
{
    constexpr qint64 nsPerSecond = 1000000000;
    timespec time = {};
    clock_gettime(clock, &time);
    return time.tv_sec * nsPerSecond + time.tv_nsec;
}

} // namespace

HeldLines::HeldLines(std::shared_ptr<GpioChip> chip, std::unique_ptr<GpioRequest> request,
                     QVector<Line> lines, DScheduler* scheduler)
    : m_chip(std::move(chip))
    , m_request(std::move(request))
    , m_lines(std::move(lines))
    , m_scheduler(scheduler)
    , m_lastNumbers(m_lines.size())
{
    for (int position = 0; position < m_lines.size(); ++position) {
        const GpioLineSettings& settings = m_lines.at(position).wish.settings;
        if (!settings.output) {
            m_inputs |= GpioRequest::bitOf(position);
        } else if (!settings.level) {
            m_keptOutputs |= GpioRequest::bitOf(position);
        }
    }
}

int HeldLines::drive(int position, int level)
{
    return m_request->writeLevels(GpioRequest::bitOf(position),
                                  level != 0 ? GpioRequest::bitOf(position) : 0);
}

int HeldLines::read(int position, int* level) const
{
    quint64 levels = 0;
    const int error = m_request->readLevels(GpioRequest::bitOf(position), &levels);
    *level = levels != 0 ? 1 : 0;
    return error;
}

/// Appends the levels of the lines of mask, true since before they were read.
int HeldLines::readLevels(quint64 mask, std::vector<Change>* changes) const
{
    const qint64 timeUs = m_scheduler->now();
    quint64 levels = 0;
    const int error = mask != 0 ? m_request->readLevels(mask, &levels) : 0;
    for (int position = 0; error == 0 && position < m_lines.size(); ++position) {
        if ((mask & GpioRequest::bitOf(position)) != 0) {
            const int level = (levels & GpioRequest::bitOf(position)) != 0 ? 1 : 0;
            changes->push_back({m_lines.at(position).number, level, timeUs, 0, timeUs});
        }
    }
    return error;
}

int HeldLines::begin(std::vector<Change>* levels)
{
    m_readUs = m_scheduler->now();
    m_beginningNs = nsOf(CLOCK_MONOTONIC);
    m_beginningRealtimeNs = nsOf(CLOCK_REALTIME);
    return readLevels(m_inputs | m_keptOutputs, levels);
}

bool HeldLines::isBeforeBeginning(const GpioEdge& edge) const
{
    const Clock clock = m_lines.at(edge.line).wish.settings.clock;
    return (clock == Clock::Monotonic && edge.timeNs < m_beginningNs) ||
           (clock == Clock::Realtime && edge.timeNs < m_beginningRealtimeNs);
}

/// The clock of the machine may be set between two edges, and nobody knows when the hardware's engine began:
/// what its edges have is the time between them.
qint64 HeldLines::steadyTime(const GpioEdge& edge)
{
    const qint64 timeUs = edge.timeNs / c_nsPerUs;
    switch (m_lines.at(edge.line).wish.settings.clock) {
    case Clock::Monotonic:
        break;
    case Clock::Realtime:
        return timeUs - m_scheduler->wallClock(0);
    case Clock::HardwareEngine:
        if (!m_hardwareEngineStartUs) {
            m_hardwareEngineStartUs = m_scheduler->now() - timeUs;
        }
        return timeUs + *m_hardwareEngineStartUs;
    }
    return timeUs;
}

/// What the numbers of the edges leave out: right before each of them, and for the course. The kernel drops
/// the oldest when it has kept its most: only then a line may have lost all that it had.
std::vector<quint32> HeldLines::count(const std::vector<GpioEdge>& edges, Course* course)
{
    std::vector<quint32> lost;
    lost.reserve(edges.size());
    qint64 lostOfLines = 0;
    quint32 highest = m_lastNumber;
    for (const GpioEdge& edge : edges) {
        lost.push_back(edge.lineNumber - m_lastNumbers.at(edge.line) - 1);
        m_lastNumbers[edge.line] = edge.lineNumber;
        if (lost.back() > 0) {
            course->lost[m_lines.at(edge.line).number] += lost.back();
            lostOfLines += lost.back();
        }
        highest = std::max(highest, edge.number);
    }
    const qint64 lostOfAll = static_cast<qint64>(highest - m_lastNumber) - static_cast<qint64>(edges.size());
    m_lastNumber = highest;
    if (edges.size() >= GpioRequest::c_keptEdges && lostOfAll > lostOfLines) {
        course->lostOfStill = static_cast<quint32>(lostOfAll - lostOfLines);
    }
    return lost;
}

void HeldLines::readAfterLoss(Course* course) const
{
    QSet<int> moved;
    for (const Change& change : course->changes) {
        moved.insert(change.number);
    }
    std::vector<Change> levels;
    course->error = readLevels(m_inputs, &levels);
    for (const Change& level : levels) {
        if (course->lostOfStill > 0 && !moved.contains(level.number)) {
            course->still.insert(level.number, {level.level, level.timeUs, true});
        } else {
            course->changes.push_back(level);
        }
    }
}

HeldLines::Course HeldLines::readCourse()
{
    Course course;
    course.fromUs = std::exchange(m_readUs, m_scheduler->now());
    std::vector<GpioEdge> edges;
    course.error = m_request->readEdges(&edges);
    // Each line has a thread of the kernel, and these need not come in the order of the edges.
    std::stable_sort(edges.begin(), edges.end(), [](const GpioEdge& first, const GpioEdge& second) {
        return first.number < second.number;
    });
    const std::vector<quint32> lost = count(edges, &course);
    for (std::size_t place = 0; place < edges.size(); ++place) {
        const GpioEdge& edge = edges.at(place);
        if (!isBeforeBeginning(edge)) {
            const qint64 timeUs = steadyTime(edge);
            m_lastOrderUs = std::max(m_lastOrderUs, timeUs);
            course.changes.push_back(
                {m_lines.at(edge.line).number, edge.level, timeUs, lost.at(place), m_lastOrderUs});
        }
    }
    m_beginningNs = 0;
    m_beginningRealtimeNs = 0;
    if (!course.lost.isEmpty() || course.lostOfStill > 0) {
        readAfterLoss(&course);
    }
    return course;
}
