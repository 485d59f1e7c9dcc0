#include "changed_rows.h"

#include "device_clock.h"

ChangedRows::ChangedRows(DeviceClock* clock, std::function<void(int, int)> tell)
    : m_clock(clock)
    , m_tell(std::move(tell))
{
    connect(clock, &DeviceClock::ticked, this, &ChangedRows::flush);
}

void ChangedRows::add(int row)
{
    m_rows.insert(row);
    m_clock->want();
}

void ChangedRows::flush()
{
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
