#pragma once

#include <QString>
#include <QVector>

#include <atomic>
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
    explicit FarSide(const QString& levelFile);
    ~FarSide();
    Q_DISABLE_COPY(FarSide)

    /// Ends the watch. Returns the first level and each change of it.
    QVector<Change> end();

private:
    void watch(const QString& levelFile);

    QVector<Change> m_changes;
    std::atomic<bool> m_watches{false};
    std::atomic<bool> m_ends{false};
    std::thread m_thread;
};
