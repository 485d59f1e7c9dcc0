#pragma once

#include <QtGlobal>

#include <deque>

/// What a line did in the last seconds.
class LineHistory
{
public:
    struct Sample
    {
        qint64 timeUs;
        int level;
    };

    /// The line has this level to begin with.
    explicit LineHistory(int level);

    /// The line has level since timeUs. Samples that are older than the longest time, or too many, are
    /// forgotten.
    void append(qint64 timeUs, int level);
    /// Level at timeUs, as far back as is remembered.
    int levelAt(qint64 timeUs) const;
    /// The changes that are remembered, in the order of their times.
    const std::deque<Sample>& samples() const { return m_samples; }
    /// True when the line has changed at fromUs or later.
    bool hasChangedSince(qint64 fromUs) const;

    static constexpr qint64 c_longestUs = 60000000;
    static constexpr std::size_t c_mostSamples = 16384;

private:
    std::deque<Sample> m_samples;
    /// Level before the first sample.
    int m_levelBefore;
};
