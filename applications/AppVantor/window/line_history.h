#pragma once

#include <devices/line.h>

#include <deque>
#include <limits>

/// The levels that occur in some part of a history; empty where nobody knew any.
struct LevelRange
{
    bool gap = false; ///< in a part of it nobody knew the level
    int lowest = std::numeric_limits<int>::max();
    int highest = std::numeric_limits<int>::min();

    bool isEmpty() const { return lowest > highest; }
    void add(const LineLevel& level);
    void add(const LevelRange& range);
};

/// What a line did, as far back as is remembered. Before that nothing is known.
class LineHistory
{
public:
    /// Of the changes the latest most, 1 or more, are remembered.
    explicit LineHistory(std::size_t most = c_mostChanges)
        : m_most(most)
    {}

    /// The line has this level since its time; one before the last change counts as that of the last. Levels
    /// that ended the longest time ago or earlier, or are too many, are forgotten.
    void append(LineLevel level);

    /// What is known of the level at timeUs.
    LineLevel at(qint64 timeUs) const;
    /// The changes, in the order of their times.
    const std::deque<LineLevel>& changes() const { return m_changes; }
    /// The place in changes() of the first after timeUs; their number when there is none.
    std::size_t firstAfter(qint64 timeUs) const;
    /// The levels of changes() from first until before end. Costs the same however many there are.
    LevelRange range(std::size_t first, std::size_t end) const;
    /// Number of changes so far, those that are forgotten too.
    quint64 changeCount() const { return m_forgotten + m_changes.size(); }
    /// Number of those until timeUs.
    quint64 changeCountUntil(qint64 timeUs) const;
    /// True when the line has changed at fromUs or later.
    bool hasChangedSince(qint64 fromUs) const;

    static constexpr qint64 c_longestUs = 600000000;
    static constexpr std::size_t c_mostChanges = 1000000;

private:
    /// Changes by blocks, whose ranges are reckoned when they are made.
    static constexpr quint64 c_block = 64;

    void forgetFirst();

    std::size_t m_most;
    std::deque<LineLevel> m_changes;
    quint64 m_forgotten = 0;
    std::deque<LevelRange> m_blocks; ///< each of c_block changes, counted from the first ever
};
