#pragma once

#include "broker_security.h"

#include <devices/broker_message.h>

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

struct mosquitto;

/// What a client tells of itself.
struct BrokerClient
{
    QByteArray name;                   ///< the broker knows one of each name
    std::optional<BrokerMessage> will; ///< what the broker says for a client that is lost
    int willDelaySeconds = 0;
};

/// One connection with a broker, from its begin to its end, in the event loop of its thread. Its signals come
/// from there, too.
class BrokerConnection : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(BrokerConnection)

public:
    BrokerConnection(const BrokerAddress& address, const BrokerAccess& access, const BrokerClient& client);
    ~BrokerConnection() override;

    /// Begins to reach for the broker at number, its host's address. What comes of it is told by opened or
    /// ended.
    void begin(const QString& number);
    /// Hands message to the broker. Returns its number, or 0, and in problem why, when the broker cannot take
    /// such a message.
    int publish(const BrokerMessage& message, DWording* problem);
    void subscribe(const std::vector<QByteArray>& topics);
    /// Takes leave: the will is not said.
    void leave();

Q_SIGNALS:
    void opened();
    void received(const BrokerMessage& message);
    /// The broker has taken the message; reason is the reason code of MQTT 5, 0 for plain success.
    void taken(int message, int reason);
    /// The broker does not pass on what was subscribed; reason as that of taken.
    void subscriptionRefused(int reason);
    /// There is no connection any more.
    void ended(const DWording& problem);

private:
    struct Notes;
    struct Callbacks;

    void watch();
    void read();
    void write();
    void keepUp();
    bool isSilent() const; ///< nothing of the broker waits to be read
    void noteEmptiness();
    void passOn(int result);
    void end(const DWording& problem);
    DWording whyEnded(int result) const;

    const BrokerAddress m_address;
    const BrokerAccess m_access;
    const BrokerClient m_client;
    QString m_verdict; ///< why the broker's certificate was refused
    SecurityContext m_security;
    mosquitto* m_mosquitto;
    std::unique_ptr<Notes> m_notes;
    std::unique_ptr<QSocketNotifier> m_reading;
    std::unique_ptr<QSocketNotifier> m_writing;
    QTimer m_upkeep;
    QTimer m_patience;
    bool m_ended = false;
};
