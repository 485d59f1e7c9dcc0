#pragma once

#include <devices/broker_address.h>
#include <devices/broker_message.h>

#include <QDeadlineTimer>
#include <QHash>
#include <QObject>
#include <QTimer>

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <vector>

class BrokerConnection;

/// A link to an MQTT broker that is made again whenever it is lost: at once at first, then after pauses that
/// grow to 10 s. It lives in the event loop of its thread and waits for nothing. What is published waits for
/// the broker in a bounded queue; what the broker had not taken when a connection ended goes out again with
/// the next one.
class Q_DECL_EXPORT BrokerLink : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(BrokerLink)

public:
    /// What may wait for the broker, in bytes.
    static constexpr int c_bound = 8 << 20;

    /// The broker knows one client of each name, and sends away the older one.
    BrokerLink(const BrokerAddress& address, const BrokerAccess& access, const QByteArray& client,
               QObject* parent = nullptr);
    /// Without leave(), the broker says the will.
    ~BrokerLink() override;

    /// What the broker is to say so many seconds after this side is lost. To be set before open().
    void setWill(const BrokerMessage& will, int delaySeconds);
    /// Subscribes a topic or pattern, and again after each reconnection.
    void subscribe(const QByteArray& topic);
    void open();
    /// Ends the link in order, without the will; nothing is emitted any more.
    void leave();

    bool isConnected() const { return m_isConnected; }
    /// Queues message. Returns false, and forgets it, when the queue is full.
    bool publish(const BrokerMessage& message);
    /// Messages to topic with this correlation that the broker has not taken do not go out, or not again.
    void withdraw(const QByteArray& topic, const QByteArray& correlation);
    /// True when a message would go out at once.
    bool isFree() const;
    /// False while so much waits that what can be left out is to be left out.
    bool hasRoom() const { return m_waitingBytes < c_bound / 2; }
    /// True when nothing waits for the broker.
    bool isEmpty() const { return m_waiting.empty() && m_underWay.empty(); }

Q_SIGNALS:
    /// There is a connection; what was subscribed is subscribed again.
    void connected();
    /// There is none, and why: once for each time that it could not be made or was lost.
    void disconnected(const DWording& problem);
    void received(const BrokerMessage& message);
    /// A message would go out at once again.
    void freeAgain();
    /// The broker took a message to topic, but nobody hears of it, or nobody may.
    void unheard(const QByteArray& topic);
    /// The broker does not take what is published here, or does not pass on what was subscribed.
    void refused(const DWording& problem);

private:
    struct Waiting
    {
        BrokerMessage message;
        QDeadlineTimer expiry;
    };

    void lookUp();
    void reach();
    void opened();
    void ended(const DWording& problem);
    void tryLater(const DWording& problem);
    void taken(int number, int reason);
    static BrokerMessage dueNow(const Waiting& waiting);
    void pump();

    const BrokerAddress m_address;
    const BrokerAccess m_access;
    const QByteArray m_client;
    std::optional<BrokerMessage> m_will;
    int m_willDelaySeconds = 0;
    std::vector<QByteArray> m_topics;
    std::unique_ptr<BrokerConnection> m_connection;
    bool m_isConnected = false;
    std::deque<Waiting> m_waiting;
    int m_waitingBytes = 0;                ///< of all that the broker has not taken
    std::map<quint64, Waiting> m_underWay; ///< by their order
    QHash<int, quint64> m_numbers;         ///< order of those under way, by what the connection calls them
    quint64 m_lastUnderWay = 0;
    bool m_hasTaken = false; ///< the broker, a message of this connection
    int m_lookUp = -1;       ///< of the broker's host, while it is under way
    QStringList m_hosts;     ///< numbers of the broker's host that have not been tried
    QTimer m_pause;
    int m_pauseMs = 0;
};
