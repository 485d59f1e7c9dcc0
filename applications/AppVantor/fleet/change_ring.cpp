#include "change_ring.h"

#include <algorithm>

quint64 ChangeRing::add(const RigChange& change)
{
    if (m_changes.size() == c_capacity) {
        m_changes.pop_front();
    }
    m_changes.push_back({m_next, change});
    return m_next++;
}

RigChanges ChangeRing::changesFrom(quint64 from, int most) const
{
    auto change = std::lower_bound(m_changes.cbegin(), m_changes.cend(), from,
                                   [](const Numbered& one, quint64 number) { return one.number < number; });
    RigChanges found;
    found.session = m_session;
    found.first = change != m_changes.cend() ? change->number : std::max(from, m_next);
    found.lost = found.first - from;
    while (change != m_changes.cend() && found.changes.size() < most && change->number == found.end()) {
        found.changes.append(change->change);
        ++change;
    }
    return found;
}
