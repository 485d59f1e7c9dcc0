#include "broker_connection.h"

#include <QElapsedTimer>

#include <mosquitto.h>
#include <mqtt_protocol.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <poll.h>
#include <utility>

namespace {

constexpr int c_qos = 1;
constexpr int c_keepAliveSeconds = 10;
constexpr int c_longestPayload = 8 << 20; ///< a description of a rig; what is longer does not come

DWording silence()
{
    return wording("it does not answer");
}

void startLibrary()
{
    static const int started = mosquitto_lib_init();
    Q_UNUSED(started)
}

/// Properties of a message of MQTT 5.
class Properties
{
public:
    Properties() = default;
    ~Properties() { mosquitto_property_free_all(&m_list); }
    Q_DISABLE_COPY(Properties)

    void addNumber(int which, int number)
    {
        mosquitto_property_add_int32(&m_list, which, static_cast<uint32_t>(number));
    }
    void addText(int which, const QByteArray& text)
    {
        mosquitto_property_add_string(&m_list, which, text.constData());
    }
    void addBytes(int which, const QByteArray& bytes)
    {
        mosquitto_property_add_binary(&m_list, which, bytes.constData(), static_cast<uint16_t>(bytes.size()));
    }
    const mosquitto_property* list() const { return m_list; }
    mosquitto_property* release() { return std::exchange(m_list, nullptr); }

private:
    mosquitto_property* m_list = nullptr;
};

/// How long a message counts, in milliseconds, from when the broker passed it on.
qint64 lifeOf(const mosquitto_property* properties)
{
    constexpr qint64 msPerSecond = 1000;
    uint32_t seconds = 0;
    const bool ends = mosquitto_property_read_int32(properties, MQTT_PROP_MESSAGE_EXPIRY_INTERVAL, &seconds,
                                                    false) != nullptr;
    return ends ? seconds * msPerSecond : std::numeric_limits<qint64>::max();
}

QByteArray responseTopicOf(const mosquitto_property* properties)
{
    char* text = nullptr;
    mosquitto_property_read_string(properties, MQTT_PROP_RESPONSE_TOPIC, &text, false);
    QByteArray topic(text);
    std::free(text); // NOLINT(cppcoreguidelines-no-malloc): the library's
    return topic;
}

QByteArray correlationOf(const mosquitto_property* properties)
{
    void* data = nullptr;
    uint16_t size = 0;
    mosquitto_property_read_binary(properties, MQTT_PROP_CORRELATION_DATA, &data, &size, false);
    QByteArray bytes(static_cast<const char*>(data), size);
    std::free(data); // NOLINT(cppcoreguidelines-no-malloc): the library's
    return bytes;
}

} // namespace

/// What the library tells while it is at work, for afterwards: who hears of it may end the connection.
struct BrokerConnection::Notes
{
    QElapsedTimer sinceEmpty; ///< how long what is read may have waited to be read
    bool opened = false;
    std::optional<int> refusal;
    std::optional<int> farewell;
    QString complaint;
    std::vector<std::pair<int, int>> taken;
    std::vector<int> refusedSubscriptions;
    std::vector<BrokerMessage> messages;
};

struct BrokerConnection::Callbacks
{
    static Notes& of(void* notes) { return *static_cast<Notes*>(notes); }

    static void connected(mosquitto* /*client*/, void* notes, int reason, int /*flags*/,
                          const mosquitto_property* /*properties*/)
    {
        if (reason == 0) {
            of(notes).opened = true;
        } else {
            of(notes).refusal = reason;
        }
    }

    static void disconnected(mosquitto* /*client*/, void* notes, int reason,
                             const mosquitto_property* /*properties*/)
    {
        if (!of(notes).farewell) { // the library may tell the end of the socket besides
            of(notes).farewell = reason;
        }
    }

    static void published(mosquitto* /*client*/, void* notes, int message, int reason,
                          const mosquitto_property* /*properties*/)
    {
        of(notes).taken.emplace_back(message, reason);
    }

    static void subscribed(mosquitto* /*client*/, void* notes, int /*message*/, int count, const int* granted,
                           const mosquitto_property* /*properties*/)
    {
        std::copy_if(granted, granted + count, std::back_inserter(of(notes).refusedSubscriptions),
                     [](int reason) { return reason >= MQTT_RC_UNSPECIFIED; });
    }

    static void received(mosquitto* /*client*/, void* notes, const mosquitto_message* message,
                         const mosquitto_property* properties)
    {
        if (message->payloadlen > c_longestPayload || of(notes).sinceEmpty.hasExpired(lifeOf(properties))) {
            return;
        }
        BrokerMessage taken;
        taken.topic = QByteArray(message->topic);
        taken.payload = QByteArray(static_cast<const char*>(message->payload), message->payloadlen);
        taken.retained = message->retain;
        taken.responseTopic = responseTopicOf(properties);
        taken.correlation = correlationOf(properties);
        of(notes).messages.push_back(taken);
    }

    static void logged(mosquitto* /*client*/, void* notes, int level, const char* text)
    {
        if (level == MOSQ_LOG_ERR) {
            of(notes).complaint = QString::fromUtf8(text);
        }
    }
};

BrokerConnection::BrokerConnection(const BrokerAddress& address, const BrokerAccess& access,
                                   const BrokerClient& client)
    : m_address(address)
    , m_access(access)
    , m_client(client)
    , m_notes(std::make_unique<Notes>())
{
    constexpr int upkeepMs = 500; // below 1 s, the shortest life of a message
    constexpr int patienceMs = 5000;
    startLibrary();
    m_notes->sinceEmpty.start();
    m_mosquitto = mosquitto_new(client.name.constData(), true, m_notes.get());
    connect(&m_upkeep, &QTimer::timeout, this, &BrokerConnection::keepUp);
    m_upkeep.setInterval(upkeepMs);
    connect(&m_patience, &QTimer::timeout, this, [this] { end(silence()); });
    m_patience.setSingleShot(true);
    m_patience.setInterval(patienceMs);
}

BrokerConnection::~BrokerConnection()
{
    mosquitto_destroy(m_mosquitto);
}

void BrokerConnection::begin(const QString& number)
{
    constexpr int inFlight = 64;
    mosquitto_int_option(m_mosquitto, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V5);
    mosquitto_int_option(m_mosquitto, MOSQ_OPT_SEND_MAXIMUM, inFlight);
    mosquitto_int_option(m_mosquitto, MOSQ_OPT_TCP_NODELAY, 1);
    mosquitto_connect_v5_callback_set(m_mosquitto, &Callbacks::connected);
    mosquitto_disconnect_v5_callback_set(m_mosquitto, &Callbacks::disconnected);
    mosquitto_publish_v5_callback_set(m_mosquitto, &Callbacks::published);
    mosquitto_subscribe_v5_callback_set(m_mosquitto, &Callbacks::subscribed);
    mosquitto_message_v5_callback_set(m_mosquitto, &Callbacks::received);
    mosquitto_log_callback_set(m_mosquitto, &Callbacks::logged);
    if (!m_access.user.isEmpty()) {
        mosquitto_username_pw_set(m_mosquitto, m_access.user.toUtf8().constData(),
                                  m_access.password.constData());
    }
    if (m_client.will) {
        Properties properties;
        properties.addNumber(MQTT_PROP_WILL_DELAY_INTERVAL, m_client.willDelaySeconds);
        mosquitto_will_set_v5(m_mosquitto, m_client.will->topic.constData(), m_client.will->payload.size(),
                              m_client.will->payload.constData(), c_qos, m_client.will->retained,
                              properties.release());
    }
    if (m_address.encrypted) {
        DWording problem;
        m_security = makeSecurity(m_address, m_access, &m_verdict, &problem);
        if (m_security == nullptr) {
            end(problem);
            return;
        }
        mosquitto_int_option(m_mosquitto, MOSQ_OPT_SSL_CTX_WITH_DEFAULTS, 0);
        mosquitto_void_option(m_mosquitto, MOSQ_OPT_SSL_CTX, m_security.get());
    }
    // The library takes the properties of a connection by its waiting call only, which needs no host for
    // that.
    constexpr int besidesPayload = 256 << 10;                          // topic and properties
    const int sessionSeconds = m_client.willDelaySeconds > 0 ? 60 : 0; // a session's end ends the delay
    Properties properties;
    properties.addNumber(MQTT_PROP_SESSION_EXPIRY_INTERVAL, sessionSeconds);
    properties.addNumber(MQTT_PROP_MAXIMUM_PACKET_SIZE, c_longestPayload + besidesPayload);
    mosquitto_connect_bind_v5(m_mosquitto, nullptr, m_address.port, c_keepAliveSeconds, nullptr,
                              properties.list());
    m_patience.start();
    const int result =
        mosquitto_connect_async(m_mosquitto, number.toUtf8().constData(), m_address.port, c_keepAliveSeconds);
    if (result == MOSQ_ERR_SUCCESS) {
        watch();
    }
    passOn(result);
}

int BrokerConnection::publish(const BrokerMessage& message, DWording* problem)
{
    Properties properties;
    if (!message.responseTopic.isEmpty()) {
        properties.addText(MQTT_PROP_RESPONSE_TOPIC, message.responseTopic);
    }
    if (!message.correlation.isEmpty()) {
        properties.addBytes(MQTT_PROP_CORRELATION_DATA, message.correlation);
    }
    if (message.expirySeconds > 0) {
        properties.addNumber(MQTT_PROP_MESSAGE_EXPIRY_INTERVAL, message.expirySeconds);
    }
    int number = 0;
    const int result =
        mosquitto_publish_v5(m_mosquitto, &number, message.topic.constData(), message.payload.size(),
                             message.payload.constData(), c_qos, message.retained, properties.list());
    const bool kept = result == MOSQ_ERR_SUCCESS || result == MOSQ_ERR_NO_CONN ||
                      result == MOSQ_ERR_CONN_LOST || result == MOSQ_ERR_ERRNO ||
                      result == MOSQ_ERR_TLS; // the end of the connection comes by itself
    watch();
    if (!kept) {
        *problem = DWording::told(QString::fromUtf8(mosquitto_strerror(result)));
    }
    return kept ? number : 0;
}

void BrokerConnection::subscribe(const std::vector<QByteArray>& topics)
{
    for (const QByteArray& topic : topics) {
        mosquitto_subscribe_v5(m_mosquitto, nullptr, topic.constData(), c_qos, 0, nullptr);
    }
    watch();
}

void BrokerConnection::leave()
{
    Properties properties; // nothing of the session is to stay
    properties.addNumber(MQTT_PROP_SESSION_EXPIRY_INTERVAL, 0);
    mosquitto_disconnect_v5(m_mosquitto, 0, properties.list());
    write();
}

/// The notifiers belong to the socket.
void BrokerConnection::watch()
{
    const int socket = mosquitto_socket(m_mosquitto);
    if (socket < 0 || m_ended) {
        return;
    }
    if (m_reading == nullptr) {
        m_reading = std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Read);
        m_writing = std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Write);
        connect(m_reading.get(), &QSocketNotifier::activated, this, &BrokerConnection::read);
        connect(m_writing.get(), &QSocketNotifier::activated, this, &BrokerConnection::write);
        m_upkeep.start();
    }
    m_writing->setEnabled(mosquitto_want_write(m_mosquitto));
}

/// What an encrypted connection has decrypted already makes its socket readable no more.
void BrokerConnection::read()
{
    constexpr int most = 64; // other work has its turn, too
    int result = MOSQ_ERR_SUCCESS;
    bool more = true;
    for (int i = 0; more && i < most; ++i) {
        result = mosquitto_loop_read(m_mosquitto, 1);
        noteEmptiness();
        auto* security = static_cast<SSL*>(mosquitto_ssl_get(m_mosquitto));
        more = result == MOSQ_ERR_SUCCESS && security != nullptr && SSL_pending(security) > 0;
    }
    if (more) {
        QMetaObject::invokeMethod(this, &BrokerConnection::read, Qt::QueuedConnection);
    }
    passOn(result);
}

/// A broker that has gone may have said why: the library would close the socket with that unread.
void BrokerConnection::write()
{
    constexpr int most = 64;
    for (int i = 0; i < most && !isSilent(); ++i) {
        read();
    }
    passOn(mosquitto_loop_write(m_mosquitto, 1));
}

bool BrokerConnection::isSilent() const
{
    pollfd socket = {mosquitto_socket(m_mosquitto), POLLIN, 0};
    return poll(&socket, 1, 0) == 0;
}

/// While this process was held up the broker's messages waited for it, and nobody says how long.
void BrokerConnection::noteEmptiness()
{
    if (isSilent()) {
        m_notes->sinceEmpty.restart();
    }
}

void BrokerConnection::keepUp()
{
    noteEmptiness();
    passOn(mosquitto_loop_misc(m_mosquitto));
}

void BrokerConnection::passOn(int result)
{
    if (m_ended) {
        return;
    }
    if (std::exchange(m_notes->opened, false)) {
        m_patience.stop();
        Q_EMIT opened();
    }
    const auto taken = std::exchange(m_notes->taken, {});
    for (const auto& [message, reason] : taken) {
        Q_EMIT this->taken(message, reason);
    }
    const auto refused = std::exchange(m_notes->refusedSubscriptions, {});
    for (const int reason : refused) {
        Q_EMIT subscriptionRefused(reason);
    }
    const auto messages = std::exchange(m_notes->messages, {});
    for (const BrokerMessage& message : messages) {
        Q_EMIT received(message);
    }
    if (result != MOSQ_ERR_SUCCESS || m_notes->refusal || m_notes->farewell) {
        end(whyEnded(result));
    } else {
        watch();
    }
}

DWording BrokerConnection::whyEnded(int result) const
{
    if (m_notes->refusal) {
        return wording("it refuses: %1")
            .arg(DWording::told(QString::fromUtf8(mosquitto_reason_string(*m_notes->refusal))));
    }
    if (!m_verdict.isEmpty()) {
        return wording("its certificate is refused: %1").arg(DWording::told(m_verdict));
    }
    if (m_notes->farewell && *m_notes->farewell >= MQTT_RC_UNSPECIFIED) {
        return wording("it ended the connection: %1")
            .arg(DWording::told(QString::fromUtf8(mosquitto_reason_string(*m_notes->farewell))));
    }
    if (result == MOSQ_ERR_KEEPALIVE) {
        return silence();
    }
    if (result == MOSQ_ERR_ERRNO) {
        return DWording::told(qt_error_string());
    }
    if (result == MOSQ_ERR_TLS && !m_notes->complaint.isEmpty()) {
        return DWording::told(m_notes->complaint);
    }
    return DWording::told(QString::fromUtf8(mosquitto_strerror(result)));
}

void BrokerConnection::end(const DWording& problem)
{
    if (m_ended) {
        return;
    }
    m_ended = true;
    m_upkeep.stop();
    m_patience.stop();
    m_reading.reset();
    m_writing.reset();
    Q_EMIT ended(problem);
}
