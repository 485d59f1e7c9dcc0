#pragma once

#include "change_ring.h"
#include "event_feed.h"
#include "level_feed.h"
#include "order_desk.h"

#include <devices/rig_changes.h>
#include <process/absence.h>

#include <QObject>
#include <QSet>

/// Where and how a bench is put on a broker.
struct RigServerSetup
{
    BrokerAddress broker; ///< with the name of the rig
    BrokerAccess access;
    bool readOnly = false;
    bool homeAssistant = false; ///< announces the rig to home-automation dashboards
};

/// Puts a bench on an MQTT broker: tells its state, its lines and every change, and takes orders.
class RigServer : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(RigServer)

public:
    /// bench must outlive this.
    RigServer(const Bench& bench, const RigServerSetup& setup, const RigForms& forms);
    ~RigServer() override;

    /// Reaches for the broker; from then on everything goes by itself.
    void begin();
    /// Takes no more orders, and ends those that run. What changes from then on is told by end.
    void close();
    /// After close: says that the rig goes, and waits a moment for the broker to hear it.
    void end();
    const BrokerAddress& address() const { return m_setup.broker; }

Q_SIGNALS:
    /// The rig is on the broker for the first time.
    void served();
    /// Another bench serves this rig now; this one does no more.
    void replaced();

private:
    void connected();
    void disconnected(const DWording& problem);
    void refused(const DWording& problem);
    void take(const BrokerMessage& message);
    void clearLinesOf(const QByteArray& description);
    void hearState(const BrokerMessage& message);
    void lineChanged(int line, const LineLevel& level);
    void answerHistory(const BrokerMessage& message);
    void publish(const QByteArray& topic, const QByteArray& payload);
    void publishLease();
    QByteArray stateCalled(const char* state) const;
    RigChange changeOf(int line, const LineLevel& level) const;

    const Bench& m_bench;
    const RigServerSetup m_setup;
    const RigForms m_forms;
    const RigTopics m_topics;
    const QString m_session;
    const qint64 m_sinceUs; ///< since 1970
    BrokerLink m_link;
    ChangeRing m_ring;
    EventFeed m_events;
    LevelFeed m_levels;
    OrderDesk m_desk;
    Absence m_broker;
    QSet<QString> m_refusals; ///< what the broker refuses, each told once
    bool m_wasConnected = false;
};
