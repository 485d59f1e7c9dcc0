#include "line_history.h"

#include <algorithm>

LineHistory::LineHistory(int level)
    : m_levelBefore(level)
{}

void LineHistory::append(qint64 timeUs, int level)
{
    m_samples.push_back({timeUs, level});
    while (m_samples.size() > c_mostSamples || m_samples.front().timeUs < timeUs - c_longestUs) {
        m_levelBefore = m_samples.front().level;
        m_samples.pop_front();
    }
}

int LineHistory::levelAt(qint64 timeUs) const
{
    const auto after =
        std::upper_bound(m_samples.cbegin(), m_samples.cend(), timeUs,
                         [](qint64 time, const Sample& sample) { return time < sample.timeUs; });
    return after == m_samples.cbegin() ? m_levelBefore : std::prev(after)->level;
}

bool LineHistory::hasChangedSince(qint64 fromUs) const
{
    return !m_samples.empty() && m_samples.back().timeUs >= fromUs;
}
