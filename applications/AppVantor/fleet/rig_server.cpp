#include "rig_server.h"

#include "home_announcement.h"
#include "rig_description.h"

#include <configuration/bench.h>
#include <configuration/config_object.h>
#include <process/diagnostics.h>

#include <QEventLoop>
#include <QUuid>

#include <utility>

namespace {

constexpr int c_lostAfterSeconds = 5;
constexpr int c_longestPayload = 64 << 10; ///< but of descriptions

DScheduler* schedulerOf(const Bench& bench)
{
    return bench.device().scheduler();
}

QByteArray clientName(const RigServerSetup& setup)
{
    return "appvantor-rig-" + setup.broker.rig.toUtf8();
}

} // namespace

RigServer::RigServer(const Bench& bench, const RigServerSetup& setup, const RigForms& forms)
    : m_bench(bench)
    , m_setup(setup)
    , m_forms(forms)
    , m_topics(setup.broker.rig)
    , m_session(QUuid::createUuid().toString(QUuid::WithoutBraces))
    , m_sinceUs(schedulerOf(bench)->wallClock(schedulerOf(bench)->now()))
    , m_link(setup.broker, setup.access, clientName(setup))
    , m_ring(m_session)
    , m_events(&m_ring, m_topics.events(), &m_link, schedulerOf(bench))
    , m_levels(bench.device().lines(), m_topics, m_session, &m_link, schedulerOf(bench))
    , m_desk(bench, m_topics, forms, &m_link, !setup.readOnly)
    , m_broker(setup.broker.text())
{
    m_link.setWill({m_topics.state(), stateCalled("lost"), true}, c_lostAfterSeconds);
    for (const QByteArray& topic : {m_topics.state(), m_topics.description(), m_topics.order(),
                                    m_topics.history(), m_topics.anyLineSet()}) {
        m_link.subscribe(topic);
    }
    connect(&m_link, &BrokerLink::connected, this, &RigServer::connected);
    connect(&m_link, &BrokerLink::disconnected, this, &RigServer::disconnected);
    connect(&m_link, &BrokerLink::refused, this, &RigServer::refused);
    connect(&m_link, &BrokerLink::received, this, &RigServer::take);
    connect(&m_desk.lease(), &RigLease::changed, this, &RigServer::publishLease);
    connect(&bench.device(), &LineDevice::lineChanged, this, &RigServer::lineChanged);
    connect(&bench.device(), &LineDevice::changesLost, this, [this](quint64 count) {
        m_ring.skip(count);
        m_events.changesAdded();
    });
    for (int line = 0; line < bench.device().lines().size(); ++line) {
        m_levels.setLevel(line, bench.device().level(line), 0);
    }
}

RigServer::~RigServer() = default;

void RigServer::begin()
{
    m_link.open();
}

void RigServer::close()
{
    m_link.disconnect(this); // nothing is told after the farewell either
    m_desk.stopAll();
}

void RigServer::end()
{
    constexpr int patienceMs = 2000;
    m_bench.device().disconnect(this);
    if (m_link.isConnected()) {
        QEventLoop loop;
        bool isFarewell = false;
        const auto goOn = [&] { // the changes first, as the broker takes them
            m_events.flush();
            m_levels.flush();
            if (m_link.isEmpty() && std::exchange(isFarewell, true)) {
                loop.quit();
            } else if (m_link.isEmpty()) {
                publish(m_topics.state(), stateCalled("offline"));
            }
        };
        connect(&m_link, &BrokerLink::freeAgain, &loop, goOn);
        connect(&m_link, &BrokerLink::disconnected, &loop, &QEventLoop::quit);
        QTimer::singleShot(patienceMs, &loop, &QEventLoop::quit);
        goOn();
        loop.exec();
        if (!isFarewell) {
            publish(m_topics.state(), stateCalled("offline"));
        }
    }
    m_link.leave();
}

/// The broker may have forgotten everything, or have said that the rig is lost.
void RigServer::connected()
{
    const bool isFirst = !std::exchange(m_wasConnected, true);
    publish(m_topics.description(), describeRig(m_bench, m_forms));
    publish(m_topics.state(), stateCalled("online"));
    if (m_setup.homeAssistant) {
        m_link.publish(homeAnnouncement(m_bench, m_setup.broker.rig, !m_setup.readOnly));
    }
    publishLease();
    m_levels.tellAll();
    if (isFirst) {
        Q_EMIT served();
    }
    m_broker.end();
}

void RigServer::disconnected(const DWording& problem)
{
    if (const std::optional<QString> text = m_broker.begin(problem)) {
        diagnostic(*text + QStringLiteral("; it is tried again"));
    }
}

void RigServer::refused(const DWording& problem)
{
    constexpr int most = 256; // answers may go to any topic
    const QString text = problem.english();
    if (m_refusals.size() < most && !m_refusals.contains(text)) {
        m_refusals.insert(text);
        diagnostic(QStringLiteral("%1: %2").arg(m_setup.broker.text(), inOneLine(text)));
    }
}

void RigServer::take(const BrokerMessage& message)
{
    if (message.topic == m_topics.description()) {
        if (message.retained) {
            clearLinesOf(message.payload);
        }
    } else if (message.payload.size() > c_longestPayload) {
        return;
    } else if (message.topic == m_topics.state()) {
        hearState(message);
    } else if (message.topic == m_topics.order()) {
        m_desk.takeOrder(message);
    } else if (message.topic == m_topics.history()) {
        answerHistory(message);
    } else {
        m_desk.takeLevel(message);
    }
}

/// Of two benches that serve one rig, the one that came later stays: not every broker says why it ended a
/// connection. Whatever else is said of the rig, by others or too late, does not stand; what the broker had
/// kept is replaced already.
void RigServer::hearState(const BrokerMessage& message)
{
    const std::optional<RigState> state = RigState::fromJson(message.payload);
    const bool isOnline = state && state->isOnline();
    if (isOnline && state->session != m_session && state->sinceUs > m_sinceUs) {
        m_link.leave();
        diagnostic(QStringLiteral("another bench serves \"%1\" now").arg(m_setup.broker.rig));
        Q_EMIT replaced();
    } else if (!message.retained && (!isOnline || state->session != m_session)) {
        publish(m_topics.state(), stateCalled("online"));
    }
}

/// An earlier run may have had other lines, whose levels the broker still has.
void RigServer::clearLinesOf(const QByteArray& description)
{
    QSet<QString> present;
    for (const DLine& line : m_bench.device().lines()) {
        present.insert(line.name);
    }
    QVector<JsonMistake> mistakes;
    const std::optional<JsonNode> json = readJson(description, &mistakes);
    const QVariantMap fields = json ? json->toVariant().toMap() : QVariantMap();
    const QVariantList lines = fields.value(QStringLiteral("lines")).toList();
    for (const QVariant& line : lines) {
        const QString name = line.toMap().value(QStringLiteral("name")).toString();
        if (!name.isEmpty() && !present.contains(name)) {
            publish(m_topics.line(name), QByteArray());
        }
    }
}

void RigServer::lineChanged(int line, const LineLevel& level)
{
    m_levels.setLevel(line, level, m_ring.add(changeOf(line, level)));
    m_events.changesAdded();
}

RigChange RigServer::changeOf(int line, const LineLevel& level) const
{
    return {schedulerOf(m_bench)->wallClock(level.sinceUs), line, level.known ? level.level : -1};
}

/// Who asks from 0 on gets the present levels, and what comes after them.
void RigServer::answerHistory(const BrokerMessage& message)
{
    constexpr int mostInAnswer = 2048;
    if (message.retained || !m_link.hasRoom() || !m_topics.mayAnswer(message.responseTopic)) {
        return;
    }
    QVector<JsonMistake> mistakes;
    const std::optional<JsonNode> json = readJson(message.payload, &mistakes);
    const QVariantMap fields = json ? json->toVariant().toMap() : QVariantMap();
    bool isNumber = false;
    const quint64 from = fields.value(QStringLiteral("from")).toULongLong(&isNumber);
    if (!isNumber) {
        return;
    }
    const bool isOfSession = fields.value(QStringLiteral("session")).toString() == m_session;
    const bool fromBeginning = from == 0 || !isOfSession || from > m_ring.next();
    RigChanges answer = m_ring.changesFrom(fromBeginning ? m_ring.next() : from, mostInAnswer);
    answer.next = answer.end();
    if (fromBeginning) {
        for (int line = 0; line < m_bench.device().lines().size(); ++line) {
            answer.levels.append(changeOf(line, m_bench.device().level(line)));
        }
    }
    Answer(message, &m_link).send(answer.toJson());
}

void RigServer::publish(const QByteArray& topic, const QByteArray& payload)
{
    m_link.publish({topic, payload, true});
}

void RigServer::publishLease()
{
    publish(m_topics.lease(), QByteArray::fromStdString(lineOf(m_desk.lease().toJson())));
}

QByteArray RigServer::stateCalled(const char* state) const
{
    return RigState{QString::fromLatin1(state), m_session, m_sinceUs}.toJson();
}
