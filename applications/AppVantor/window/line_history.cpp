#include "line_history.h"

#include <algorithm>

void LevelRange::add(const LineLevel& level)
{
    add(level.known ? LevelRange{false, level.level, level.level} : LevelRange{true});
}

void LevelRange::add(const LevelRange& range)
{
    gap = gap || range.gap;
    lowest = std::min(lowest, range.lowest);
    highest = std::max(highest, range.highest);
}

/// A device that is lost has its loss dated when it is noticed, which may be after it is back.
void LineHistory::append(LineLevel level)
{
    if (hasChangedSince(level.sinceUs)) {
        level.sinceUs = m_changes.back().sinceUs;
    }
    if (changeCount() % c_block == 0) {
        m_blocks.emplace_back();
    }
    m_blocks.back().add(level);
    m_changes.push_back(level);
    while (m_changes.size() > m_most ||
           (m_changes.size() > 1 && m_changes.at(1).sinceUs <= level.sinceUs - c_longestUs)) {
        forgetFirst();
    }
}

void LineHistory::forgetFirst()
{
    m_changes.pop_front();
    if (++m_forgotten % c_block == 0) {
        m_blocks.pop_front();
    }
}

std::size_t LineHistory::firstAfter(qint64 timeUs) const
{
    const auto after =
        std::upper_bound(m_changes.cbegin(), m_changes.cend(), timeUs,
                         [](qint64 time, const LineLevel& change) { return time < change.sinceUs; });
    return static_cast<std::size_t>(after - m_changes.cbegin());
}

LineLevel LineHistory::at(qint64 timeUs) const
{
    const std::size_t after = firstAfter(timeUs);
    return after == 0 ? LineLevel() : m_changes.at(after - 1);
}

quint64 LineHistory::changeCountUntil(qint64 timeUs) const
{
    return m_forgotten + firstAfter(timeUs);
}

bool LineHistory::hasChangedSince(qint64 fromUs) const
{
    return !m_changes.empty() && m_changes.back().sinceUs >= fromUs;
}

LevelRange LineHistory::range(std::size_t first, std::size_t end) const
{
    LevelRange range;
    const std::size_t offset = m_forgotten % c_block; // the first block may have lost some of its changes
    std::size_t change = first;
    while (change < end) {
        const std::size_t place = change + offset;
        if (place % c_block == 0 && change + c_block <= end) {
            range.add(m_blocks.at(place / c_block));
            change += c_block;
        } else {
            range.add(m_changes.at(change));
            ++change;
        }
    }
    return range;
}
