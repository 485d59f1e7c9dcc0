#pragma once

#include <QObject>
#include <QTimer>

#include <functional>
#include <set>

/// Gathers the rows of a model that have changed and tells of them a few times a second, however often they
/// change.
class ChangedRows : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ChangedRows)

public:
    /// tell is called with the first and last row of each run of changed rows.
    explicit ChangedRows(std::function<void(int, int)> tell, QObject* parent = nullptr);

    /// The row has changed.
    void add(int row);
    /// Tells of what has changed now.
    void flush();

private:
    std::function<void(int, int)> m_tell;
    std::set<int> m_rows;
    QTimer m_timer;
};
