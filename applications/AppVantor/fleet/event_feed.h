#pragma once

#include "change_ring.h"

#include <devices/broker_link.h>
#include <plugin_management/d_scheduler.h>

#include <QObject>

/// Tells every change of a rig's lines, in their order: a message each 20 ms or 256 changes. What the broker
/// cannot take yet stays in the ring; what is pushed out of it before is told as lost.
class EventFeed : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(EventFeed)

public:
    /// All must outlive this.
    EventFeed(ChangeRing* ring, const QByteArray& topic, BrokerLink* link, DScheduler* scheduler);
    ~EventFeed() override;

    /// There are more changes in the ring.
    void changesAdded();
    /// Tells what waits at once, as far as the broker takes it.
    void flush();

private:
    ChangeRing* const m_ring;
    const QByteArray m_topic;
    BrokerLink* const m_link;
    DScheduler* const m_scheduler;
    quint64 m_next = 1; ///< number of the change that goes out next
    DScheduler::Appointment m_flush;
};
