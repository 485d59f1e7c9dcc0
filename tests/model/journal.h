#pragma once

#include "literals.h"

#include <plugin_management/d_scheduler.h>

#include <QString>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <deque>

/// Keeps the last actions of a run, and ends the process with them where the run breaks a rule, or crashes.
/// One at a time.
class Journal
{
public:
    /// The times are those of clock; aloud prints each action as it happens.
    Journal(quint64 seed, int steps, bool aloud, const DScheduler* clock)
        : m_seed(seed)
        , m_steps(steps)
        , m_aloud(aloud)
        , m_clock(clock)
    {
        s_current = this;
        handleCrashes(tellOfCrash);
    }

    ~Journal()
    {
        handleCrashes(SIG_DFL);
        s_current = nullptr;
    }
    Q_DISABLE_COPY(Journal)

    void beginStep(int step) { m_step = step; }
    /// Something is about to be done, inside as many others as depth says.
    void note(int depth, const QString& action)
    {
        const QString line =
            "%1 at %2 us: %3%4"_s.arg(QString::number(m_step), QString::number(m_clock->now()),
                                      QString(2 * depth, QLatin1Char(' ')), action);
        if (m_aloud) {
            std::fprintf(stderr, "%s\n", qPrintable(line));
        }
        m_actions.push_back(line);
        if (m_actions.size() > c_kept) {
            m_actions.pop_front();
        }
    }

    /// Ends the process with a report unless rule holds.
    void require(bool holds, const QString& rule) const
    {
        if (!holds) {
            report(rule);
        }
    }

private:
    /// What is on the stack may be the very thing that broke: nothing of it is run any more.
    [[noreturn]] void report(const QString& rule) const
    {
        std::fprintf(stderr, "BROKEN in step %d of seed %llu: %s\nThe last actions:\n", m_step, m_seed,
                     qPrintable(rule));
        for (const QString& action : m_actions) {
            std::fprintf(stderr, "  %s\n", qPrintable(action));
        }
        std::fprintf(stderr, "To repeat it: --seed %llu --steps %d\n", m_seed, m_steps);
        std::fflush(nullptr);
        std::_Exit(EXIT_FAILURE);
    }

    /// Not what a signal handler may do, but the process is lost anyway.
    static void tellOfCrash(int signal)
    {
        std::signal(signal, SIG_DFL);
        s_current->require(false, "the process got signal %1"_s.arg(signal));
    }

    static void handleCrashes(void (*handler)(int))
    {
#ifdef __SANITIZE_ADDRESS__
        Q_UNUSED(handler) // the sanitizer tells of crashes
#else
        for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGABRT}) {
            std::signal(signal, handler);
        }
#endif
    }

    static constexpr std::size_t c_kept = 20;
    static inline const Journal* s_current = nullptr;

    const quint64 m_seed;
    const int m_steps;
    const bool m_aloud;
    const DScheduler* const m_clock;
    int m_step = 0;
    std::deque<QString> m_actions;
};
