#include "event_feed.h"

#include <utility>

namespace {
constexpr int c_mostInMessage = 256;
constexpr qint64 c_patienceUs = 20000;
} // namespace

EventFeed::EventFeed(ChangeRing* ring, const QByteArray& topic, BrokerLink* link, DScheduler* scheduler)
    : m_ring(ring)
    , m_topic(topic)
    , m_link(link)
    , m_scheduler(scheduler)
{
    connect(link, &BrokerLink::freeAgain, this, &EventFeed::changesAdded);
    connect(link, &BrokerLink::connected, this, &EventFeed::changesAdded);
}

EventFeed::~EventFeed()
{
    m_scheduler->cancel(m_flush);
}

void EventFeed::changesAdded()
{
    const quint64 waiting = m_ring->next() - m_next;
    if (waiting >= c_mostInMessage) {
        flush();
    } else if (waiting > 0 && m_flush == DScheduler::Appointment()) {
        m_flush = m_scheduler->at(m_scheduler->now() + c_patienceUs, [this] { flush(); });
    }
}

void EventFeed::flush()
{
    m_scheduler->cancel(std::exchange(m_flush, {}));
    while (m_link->isFree() && m_next < m_ring->next()) {
        const RigChanges changes = m_ring->changesFrom(m_next, c_mostInMessage);
        m_link->publish({m_topic, changes.toJson()});
        m_next = changes.end();
    }
}
