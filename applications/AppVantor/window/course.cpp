#include "course.h"

#include <algorithm>

std::vector<CourseStep> courseOf(const LineHistory& history, const TimeColumns& columns, qint64 first,
                                 qint64 untilUs)
{
    const qint64 fromUs = columns.shownBy(first);
    const std::deque<LineLevel>& changes = history.changes();
    const auto firstAfter = [&](const std::deque<LineLevel>::const_iterator& from, qint64 timeUs) {
        return std::upper_bound(from, changes.cend(), timeUs,
                                [](qint64 time, const LineLevel& change) { return time < change.sinceUs; });
    };
    std::vector<CourseStep> steps;
    const auto addStep = [&steps](int column, int end, const LevelRange& levels) {
        if (column < end && !levels.isEmpty()) {
            steps.push_back({column, end - column, levels});
        }
    };
    LineLevel level = history.at(fromUs);
    int column = 0;
    auto change = firstAfter(changes.cbegin(), fromUs);
    const auto last = firstAfter(change, untilUs);
    while (change != last) {
        const auto changed = static_cast<int>(columns.of(change->sinceUs) - first);
        const auto end = std::min(last, firstAfter(change, columns.startOf(first + changed + 1) - 1));
        LevelRange levels;
        levels.add(level);
        addStep(column, changed, levels);
        levels.add(history.range(static_cast<std::size_t>(change - changes.cbegin()),
                                 static_cast<std::size_t>(end - changes.cbegin())));
        addStep(changed, changed + 1, levels);
        column = changed + 1;
        level = *std::prev(end);
        change = end;
    }
    LevelRange levels;
    levels.add(level);
    addStep(column, static_cast<int>(columns.of(untilUs) - first) + 1, levels);
    return steps;
}
