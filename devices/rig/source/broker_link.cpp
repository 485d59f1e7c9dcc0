#include <devices/broker_link.h>

#include "broker_connection.h"

#include <QHostAddress>
#include <QHostInfo>

#include <mosquitto.h>
#include <mqtt_protocol.h>

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t c_mostUnderWay = 64;
constexpr int c_shortestPauseMs = 500;
constexpr qint64 c_msPerSecond = 1000;
constexpr int c_longestPauseMs = 10000;

int sizeOf(const BrokerMessage& message)
{
    constexpr int besides = 64;
    return message.topic.size() + message.payload.size() + message.responseTopic.size() +
           message.correlation.size() + besides;
}

DWording notTaken(const BrokerMessage& message, const DWording& why)
{
    return wording(R"(it does not take "%1": %2)").arg(QString::fromUtf8(message.topic), why);
}

} // namespace

BrokerLink::BrokerLink(const BrokerAddress& address, const BrokerAccess& access, const QByteArray& client,
                       QObject* parent)
    : QObject(parent)
    , m_address(address)
    , m_access(access)
    , m_client(client)
{
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &BrokerLink::lookUp);
}

BrokerLink::~BrokerLink() = default;

void BrokerLink::setWill(const BrokerMessage& will, int delaySeconds)
{
    m_will = will;
    m_willDelaySeconds = delaySeconds;
}

void BrokerLink::subscribe(const QByteArray& topic)
{
    m_topics.push_back(topic);
    if (m_isConnected) {
        m_connection->subscribe({topic});
    }
}

void BrokerLink::open()
{
    m_pauseMs = 0;
    m_pause.start(0); // what comes of it is told from the event loop
}

void BrokerLink::leave()
{
    m_pause.stop();
    m_lookUp = -1;
    m_isConnected = false;
    if (m_connection != nullptr) {
        m_connection->disconnect(this);
        m_connection->leave();
        m_connection->setParent(this);
        m_connection.release()->deleteLater(); // it may be at work
    }
}

bool BrokerLink::publish(const BrokerMessage& message)
{
    if (m_waitingBytes + sizeOf(message) > c_bound) {
        return false;
    }
    m_waitingBytes += sizeOf(message);
    m_waiting.push_back({message, message.expirySeconds > 0
                                      ? QDeadlineTimer(message.expirySeconds * c_msPerSecond)
                                      : QDeadlineTimer(QDeadlineTimer::Forever)});
    pump();
    return true;
}

void BrokerLink::withdraw(const QByteArray& topic, const QByteArray& correlation)
{
    const auto expire = [&](Waiting* waiting) {
        if (waiting->message.topic == topic && waiting->message.correlation == correlation) {
            waiting->expiry = QDeadlineTimer(0);
        }
    };
    for (Waiting& waiting : m_waiting) {
        expire(&waiting);
    }
    for (auto& [order, waiting] : m_underWay) {
        expire(&waiting);
    }
}

bool BrokerLink::isFree() const
{
    return m_isConnected && m_waiting.empty() && m_underWay.size() < c_mostUnderWay;
}

/// The library would wait for the answer.
void BrokerLink::lookUp()
{
    if (!QHostAddress(m_address.host).isNull()) {
        m_hosts = QStringList(m_address.host);
        reach();
        return;
    }
    m_lookUp = QHostInfo::lookupHost(m_address.host, this, [this](const QHostInfo& found) {
        if (found.lookupId() != m_lookUp) {
            return; // the link has left since
        }
        m_lookUp = -1;
        m_hosts.clear();
        const QList<QHostAddress> addresses = found.addresses();
        for (const QHostAddress& address : addresses) {
            m_hosts.append(address.toString());
        }
        if (m_hosts.isEmpty()) {
            tryLater(DWording::told(found.errorString()));
        } else {
            reach();
        }
    });
}

void BrokerLink::reach()
{
    BrokerClient client;
    client.name = m_client;
    client.will = m_will;
    client.willDelaySeconds = m_willDelaySeconds;
    m_connection = std::make_unique<BrokerConnection>(m_address, m_access, client);
    connect(m_connection.get(), &BrokerConnection::opened, this, &BrokerLink::opened);
    connect(m_connection.get(), &BrokerConnection::received, this, &BrokerLink::received);
    connect(m_connection.get(), &BrokerConnection::taken, this, &BrokerLink::taken);
    connect(m_connection.get(), &BrokerConnection::subscriptionRefused, this, [this](int reason) {
        Q_EMIT refused(wording("it passes nothing on: %1")
                           .arg(DWording::told(QString::fromUtf8(mosquitto_reason_string(reason)))));
    });
    connect(m_connection.get(), &BrokerConnection::ended, this, &BrokerLink::ended);
    m_connection->begin(m_hosts.takeFirst());
}

void BrokerLink::opened()
{
    m_pauseMs = 0;
    m_isConnected = true;
    m_hasTaken = false;
    m_connection->subscribe(m_topics);
    Q_EMIT connected();
    pump();
}

void BrokerLink::ended(const DWording& problem)
{
    m_connection->setParent(this);
    m_connection.release()->deleteLater(); // it is at work
    m_numbers.clear();
    for (auto waiting = m_underWay.rbegin(); waiting != m_underWay.rend(); ++waiting) {
        m_waiting.push_front(std::move(waiting->second));
    }
    m_underWay.clear();
    const bool wasConnected = std::exchange(m_isConnected, false);
    if (!wasConnected && !m_hosts.isEmpty()) {
        reach(); // the host has another number
    } else {
        tryLater(problem);
    }
}

void BrokerLink::tryLater(const DWording& problem)
{
    m_pauseMs = std::clamp(m_pauseMs * 2, c_shortestPauseMs, c_longestPauseMs);
    m_pause.start(m_pauseMs);
    Q_EMIT disconnected(problem);
}

void BrokerLink::taken(int number, int reason)
{
    m_hasTaken = true;
    const auto found = m_underWay.find(m_numbers.take(number));
    if (found == m_underWay.end()) {
        return;
    }
    const BrokerMessage message = std::move(found->second.message);
    m_underWay.erase(found);
    m_waitingBytes -= sizeOf(message);
    if (reason >= MQTT_RC_UNSPECIFIED) {
        Q_EMIT refused(notTaken(message, DWording::told(QString::fromUtf8(mosquitto_reason_string(reason)))));
    }
    if (reason >= MQTT_RC_NO_MATCHING_SUBSCRIBERS) {
        Q_EMIT unheard(message.topic);
    }
    pump();
    if (isFree()) {
        Q_EMIT freeAgain();
    }
}

/// The message with what is left of its time.
BrokerMessage BrokerLink::dueNow(const Waiting& waiting)
{
    BrokerMessage message = waiting.message;
    if (!waiting.expiry.isForever()) {
        message.expirySeconds =
            static_cast<int>((waiting.expiry.remainingTime() + c_msPerSecond - 1) / c_msPerSecond);
    }
    return message;
}

/// The first message goes alone: a broker may end the connection with one that it refuses, and what it said
/// of it would be lost in a reset where more is on its way.
void BrokerLink::pump()
{
    const auto mostUnderWay = [this] { return m_hasTaken ? c_mostUnderWay : 1; };
    while (m_isConnected && !m_waiting.empty() && m_underWay.size() < mostUnderWay()) {
        Waiting next = std::move(m_waiting.front());
        m_waiting.pop_front();
        DWording problem;
        const int number = next.expiry.hasExpired() ? 0 : m_connection->publish(dueNow(next), &problem);
        if (number == 0) {
            m_waitingBytes -= sizeOf(next.message);
            if (!problem.isEmpty()) {
                Q_EMIT refused(notTaken(next.message, problem));
            }
            continue;
        }
        m_numbers.insert(number, ++m_lastUnderWay);
        m_underWay.emplace(m_lastUnderWay, std::move(next));
    }
}
