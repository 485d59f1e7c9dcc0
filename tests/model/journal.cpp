#include "journal.h"

#include "literals.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr std::size_t c_kept = 20;

#ifdef __SANITIZE_ADDRESS__
constexpr bool c_tellsOfCrashes = false; // the sanitizer does
#else
constexpr bool c_tellsOfCrashes = true;
#endif

const Journal* currentJournal = nullptr;

/// Not what a signal handler may do, but the process is lost anyway.
void tellOfCrash(int signal)
{
    std::signal(signal, SIG_DFL);
    currentJournal->require(false, "the process got signal %1"_s.arg(signal));
}

void handleCrashes(void (*handler)(int))
{
    if (c_tellsOfCrashes) {
        for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGABRT}) {
            std::signal(signal, handler);
        }
    }
}

} // namespace

Journal::Journal(quint64 seed, int steps, bool aloud, const DScheduler* clock)
    : m_seed(seed)
    , m_steps(steps)
    , m_aloud(aloud)
    , m_clock(clock)
{
    currentJournal = this;
    handleCrashes(tellOfCrash);
}

Journal::~Journal()
{
    handleCrashes(SIG_DFL);
    currentJournal = nullptr;
}

void Journal::beginStep(int step)
{
    m_step = step;
}

void Journal::note(int depth, const QString& action)
{
    const QString line = "%1 at %2 us: %3%4"_s.arg(QString::number(m_step), QString::number(m_clock->now()),
                                                   QString(2 * depth, QLatin1Char(' ')), action);
    if (m_aloud) {
        std::fprintf(stderr, "%s\n", qPrintable(line));
    }
    m_actions.push_back(line);
    if (m_actions.size() > c_kept) {
        m_actions.pop_front();
    }
}

/// What is on the stack may be the very thing that broke: nothing of it is run any more.
void Journal::report(const QString& rule) const
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
