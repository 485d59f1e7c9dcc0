#pragma once

#include <QObject>

#include <functional>
#include <set>

class DeviceClock;

/// Gathers the rows of a model that have changed and tells of them at the clock's next tick, however often
/// they change.
class ChangedRows : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ChangedRows)

public:
    /// tell is called with the first and last row of each run of changed rows. clock must outlive this.
    ChangedRows(DeviceClock* clock, std::function<void(int, int)> tell);

    /// The row has changed.
    void add(int row);
    /// Tells of what has changed now.
    void flush();

private:
    DeviceClock* const m_clock;
    const std::function<void(int, int)> m_tell;
    std::set<int> m_rows;
};
