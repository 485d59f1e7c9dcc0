#include "course_measure.h"

#include <cstdlib>

namespace {

using Changes = std::deque<LineLevel>;

bool isEdge(const Changes& changes, std::size_t number)
{
    return number > 0 && number < changes.size() && changes.at(number - 1).known &&
           changes.at(number).known && changes.at(number - 1).level != changes.at(number).level;
}

} // namespace

std::optional<qint64> edgeAfter(const LineHistory& history, qint64 timeUs)
{
    const Changes& changes = history.changes();
    std::size_t number = history.firstAfter(timeUs);
    while (number < changes.size() && !isEdge(changes, number)) {
        ++number;
    }
    return number < changes.size() ? std::optional(changes.at(number).sinceUs) : std::nullopt;
}

std::optional<qint64> edgeBefore(const LineHistory& history, qint64 timeUs)
{
    const Changes& changes = history.changes();
    for (std::size_t number = history.firstAfter(timeUs - 1); number-- > 0;) {
        if (isEdge(changes, number)) {
            return changes.at(number).sinceUs;
        }
    }
    return std::nullopt;
}

std::optional<qint64> nearestEdge(const LineHistory& history, qint64 timeUs, qint64 withinUs)
{
    const std::optional<qint64> before = edgeBefore(history, timeUs + 1);
    const std::optional<qint64> after = edgeAfter(history, timeUs);
    const bool isAfter = after && (!before || *after - timeUs < timeUs - *before);
    const std::optional<qint64> nearest = isAfter ? after : before;
    return nearest && std::abs(*nearest - timeUs) <= withinUs ? nearest : std::nullopt;
}

std::optional<LevelMeasure> measureAt(const LineHistory& history, qint64 timeUs)
{
    const Changes& changes = history.changes();
    const std::size_t end = history.firstAfter(timeUs);
    if (end == 0 || !changes.at(end - 1).known) {
        return std::nullopt;
    }
    const std::size_t begin = end - 1;
    LevelMeasure measure;
    measure.level = changes.at(begin).level;
    if (!isEdge(changes, begin) || !isEdge(changes, end)) {
        return measure;
    }
    const auto timeOf = [&changes](std::size_t number) { return changes.at(number).sinceUs; };
    const auto isSame = [&changes](std::size_t one, std::size_t other) {
        return changes.at(one).level == changes.at(other).level;
    };
    measure.widthUs = timeOf(end) - timeOf(begin);
    if (isEdge(changes, end + 1) && isSame(begin, end + 1)) {
        measure.periodUs = timeOf(end + 1) - timeOf(begin);
    } else if (begin > 0 && isEdge(changes, begin - 1) && isSame(begin - 1, end)) {
        measure.periodUs = timeOf(end) - timeOf(begin - 1);
    }
    if (measure.periodUs && *measure.periodUs <= 0) {
        measure.periodUs.reset();
    } else if (measure.periodUs) {
        measure.share = static_cast<double>(*measure.widthUs) / static_cast<double>(*measure.periodUs);
    }
    return measure;
}

std::optional<SelectionMeasure> measureBetween(const LineHistory& history, qint64 fromUs, qint64 toUs)
{
    const Changes& changes = history.changes();
    SelectionMeasure measure;
    double sum = 0;
    qint64 knownUs = 0;
    LineLevel level = history.at(fromUs);
    qint64 sinceUs = fromUs;
    const auto pass = [&](qint64 untilUs) {
        if (level.known && untilUs > sinceUs) {
            measure.levels.add(level);
            sum += static_cast<double>(level.level) * static_cast<double>(untilUs - sinceUs);
            knownUs += untilUs - sinceUs;
        }
        sinceUs = untilUs;
    };
    for (std::size_t number = history.firstAfter(fromUs - 1);
         number < changes.size() && changes.at(number).sinceUs <= toUs; ++number) {
        pass(changes.at(number).sinceUs);
        level = changes.at(number);
        measure.edges += isEdge(changes, number) ? 1 : 0;
    }
    pass(toUs);
    if (knownUs == 0) {
        return std::nullopt;
    }
    measure.mean = sum / static_cast<double>(knownUs);
    return measure;
}
