#pragma once

#include <plugin_management/d_scheduler.h>

#include <QString>

#include <deque>

/// Keeps the last actions of a run, and ends the process with them where the run breaks a rule, or crashes.
/// One at a time.
class Journal
{
public:
    /// The times are those of clock; aloud prints each action as it happens.
    Journal(quint64 seed, int steps, bool aloud, const DScheduler* clock);
    ~Journal();
    Q_DISABLE_COPY(Journal)

    void beginStep(int step);
    /// Something is about to be done, inside as many others as depth says.
    void note(int depth, const QString& action);
    /// Ends the process with a report unless rule holds.
    void require(bool holds, const QString& rule) const
    {
        if (!holds) {
            report(rule);
        }
    }

private:
    [[noreturn]] void report(const QString& rule) const;

    const quint64 m_seed;
    const int m_steps;
    const bool m_aloud;
    const DScheduler* const m_clock;
    int m_step = 0;
    std::deque<QString> m_actions;
};
