#include "changed_rows.h"

namespace {
constexpr int c_intervalMs = 33;
}

ChangedRows::ChangedRows(std::function<void(int, int)> tell, QObject* parent)
    : QObject(parent)
    , m_tell(std::move(tell))
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(c_intervalMs);
    connect(&m_timer, &QTimer::timeout, this, &ChangedRows::flush);
}

void ChangedRows::add(int row)
{
    m_rows.insert(row);
    if (!m_timer.isActive()) {
        m_timer.start();
    }
}

void ChangedRows::flush()
{
    m_timer.stop();
    const std::set<int> rows = std::exchange(m_rows, {});
    auto row = rows.cbegin();
    while (row != rows.cend()) {
        const int first = *row;
        int last = first;
        while (++row != rows.cend() && *row == last + 1) {
            last = *row;
        }
        m_tell(first, last);
    }
}
