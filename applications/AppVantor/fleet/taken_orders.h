#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QSet>

#include <deque>

/// The orders that were taken last, so that one that comes twice runs once.
class TakenOrders
{
public:
    /// How many it remembers.
    static constexpr std::size_t c_capacity = 4096;

    /// True the first time that an order of this response topic and correlation comes; an order without
    /// correlation cannot be told from another.
    bool isNew(const QByteArray& responseTopic, const QByteArray& correlation)
    {
        const QByteArray order =
            QCryptographicHash::hash(responseTopic + '\n' + correlation, QCryptographicHash::Sha256);
        if (correlation.isEmpty() || m_known.contains(order)) {
            return correlation.isEmpty();
        }
        if (m_order.size() == c_capacity) {
            m_known.remove(m_order.front());
            m_order.pop_front();
        }
        m_known.insert(order);
        m_order.push_back(order);
        return true;
    }

private:
    QSet<QByteArray> m_known;
    std::deque<QByteArray> m_order; ///< hashes: either may be long
};
