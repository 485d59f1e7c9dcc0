#include "far_side.h"

#include "sim_chip.h"

#include <chrono>

FarSide::FarSide(const QString& levelFile)
    : m_thread([this, levelFile] { watch(levelFile); })
{
    while (!m_watches) {
        std::this_thread::yield();
    }
}

FarSide::~FarSide()
{
    end();
}

QVector<FarSide::Change> FarSide::end()
{
    m_ends = true;
    if (m_thread.joinable()) {
        m_thread.join();
    }
    return m_changes;
}

void FarSide::watch(const QString& levelFile)
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    while (!m_ends) {
        const int level = readFile(levelFile).toInt();
        if (m_changes.isEmpty() || m_changes.last().level != level) {
            m_changes.append(
                {std::chrono::duration<double, std::milli>(Clock::now() - start).count(), level});
        }
        m_watches = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}
