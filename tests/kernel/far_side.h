#pragma once

#include "sim_chip.h"

#include <QString>
#include <QVector>

#include <atomic>
#include <chrono>
#include <thread>

/// Watches the level of a wire from outside, a thousand times a second.
class FarSide
{
public:
    struct Change
    {
        double ms = 0;
        int level = 0;
    };

    /// Begins the watch; the first level is known when this returns.
    explicit FarSide(const QString& levelFile)
        : m_thread([this, levelFile] { watch(levelFile); })
    {
        while (!m_watches) {
            std::this_thread::yield();
        }
    }

    ~FarSide() { end(); }
    Q_DISABLE_COPY(FarSide)

    /// Ends the watch. Returns the first level and each change of it.
    QVector<Change> end()
    {
        m_ends = true;
        if (m_thread.joinable()) {
            m_thread.join();
        }
        return m_changes;
    }

private:
    void watch(const QString& levelFile)
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

    QVector<Change> m_changes;
    std::atomic<bool> m_watches{false};
    std::atomic<bool> m_ends{false};
    std::thread m_thread;
};
