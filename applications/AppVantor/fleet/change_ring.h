#pragma once

#include <devices/rig_changes.h>

#include <deque>

/// The latest changes of a rig, numbered from 1; the oldest make room for new ones.
class ChangeRing
{
public:
    /// How many changes it holds at most: some 8 MiB.
    static constexpr std::size_t c_capacity = 1 << 18;

    explicit ChangeRing(const QString& session)
        : m_session(session)
    {}

    /// Takes the next change, and returns its number.
    quint64 add(const RigChange& change);
    /// So many changes, which have their numbers, were not seen.
    void skip(quint64 count) { m_next += count; }
    /// Number that the next change will have.
    quint64 next() const { return m_next; }
    /// Changes from the number from on, at most so many, without a gap among them. What is lost between from
    /// and the first of them is told there.
    RigChanges changesFrom(quint64 from, int most) const;

private:
    struct Numbered
    {
        quint64 number;
        RigChange change;
    };

    const QString m_session;
    std::deque<Numbered> m_changes;
    quint64 m_next = 1;
};
