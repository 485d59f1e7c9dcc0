#include "rig_device.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSysInfo>
#include <QUuid>

#include <utility>

namespace {

constexpr qint64 c_patienceUs = 5000000;
const char* const c_historyCorrelation = "history";
const char* const c_levelsCorrelation = "levels";

DFailure::Kind kindCalled(const QString& name)
{
    for (int kind = 1; kind < static_cast<int>(DFailure::Kind::Count); ++kind) {
        if (DFailure{static_cast<DFailure::Kind>(kind), {}}.kindName() == name) {
            return static_cast<DFailure::Kind>(kind);
        }
    }
    return DFailure::Kind::RefusedByDevice;
}

QByteArray toText(const QJsonObject& json)
{
    return QJsonDocument(json).toJson(QJsonDocument::Compact);
}

} // namespace

QVector<DLine> rigLines(const RigDeviceSetup& setup)
{
    QVector<DLine> lines;
    for (const RigDeviceSetup::Line& line : setup.lines) {
        lines.append(line.line);
    }
    return lines;
}

QString thisHolder()
{
    return qEnvironmentVariable("USER", QStringLiteral("somebody")) + QLatin1Char('@') +
           QSysInfo::machineHostName();
}

std::unique_ptr<LineDevice> makeRigDevice(const RigDeviceSetup& setup, DScheduler* scheduler,
                                          DevicePlace place)
{
    return std::make_unique<LineDevice>(
        QStringLiteral("rig"), rigLines(setup), scheduler, place,
        [setup](DScheduler* clock, LineListener* listener) {
            return std::make_unique<RigDevice>(setup, clock, listener);
        },
        OutputsAtEnd::Stay);
}

RigDevice::RigDevice(const RigDeviceSetup& setup, DScheduler* scheduler, LineListener* listener)
    : LineEngine(rigLines(setup), scheduler, listener)
    , m_setup(setup)
    , m_topics(setup.broker.rig)
    , m_client("appvantor-" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces))
{}

RigDevice::~RigDevice()
{
    scheduler()->cancel(m_patience);
    if (m_link != nullptr) {
        m_link->leave();
    }
}

void RigDevice::open()
{
    m_link = std::make_unique<BrokerLink>(m_setup.broker, m_setup.access, m_client);
    for (const QByteArray& topic :
         {m_topics.description(), m_topics.state(), m_topics.events(), m_topics.answer(m_client)}) {
        m_link->subscribe(topic);
    }
    QObject::connect(m_link.get(), &BrokerLink::connected, m_link.get(), [this] { linkMade(); });
    QObject::connect(m_link.get(), &BrokerLink::disconnected, m_link.get(),
                     [this](const DWording& problem) { linkLost(problem); });
    QObject::connect(m_link.get(), &BrokerLink::received, m_link.get(),
                     [this](const BrokerMessage& message) { take(message); });
    m_link->open();
}

void RigDevice::close()
{
    scheduler()->cancel(std::exchange(m_patience, {}));
    if (m_link != nullptr) {
        m_link->leave();
        m_link.release()->deleteLater(); // it may be at work
    }
    m_isOnline = false;
    m_isCurrent = false;
    m_requests.clear();
    m_early.clear();
    LineEngine::close();
}

void RigDevice::linkMade()
{
    m_isCurrent = false;
    loseAfter(c_patienceUs,
              wording(R"(there is no rig "%1" on %2)").arg(m_setup.broker.rig, m_setup.broker.text()));
}

/// A broker that is back soon has been away for nobody.
void RigDevice::linkLost(const DWording& problem)
{
    const DWording text = wording("%1: %2").arg(m_setup.broker.text(), problem);
    m_isOnline = false; // the rig's state comes anew
    m_isCurrent = false;
    if (isConnected()) {
        loseAfter(c_patienceUs, text);
    } else {
        lose(text);
    }
}

/// A rig may have left out a question when it had too much to tell: it is asked again.
void RigDevice::loseAfter(qint64 patienceUs, const DWording& problem)
{
    m_impatience = problem;
    if (m_patience == DScheduler::Appointment()) {
        m_patience = scheduler()->at(scheduler()->now() + patienceUs, [this] {
            m_patience = {};
            lose(m_impatience);
            catchUp();
        });
    }
}

void RigDevice::lose(const DWording& problem)
{
    scheduler()->cancel(std::exchange(m_patience, {}));
    m_isCurrent = false;
    for (auto request = m_requests.cbegin(); request != m_requests.cend(); ++request) {
        withdraw(request.key());
    }
    m_requests.clear();
    m_early.clear();
    setUnreachable(problem);
}

void RigDevice::take(const BrokerMessage& message)
{
    if (message.topic == m_topics.description()) {
        takeDescription(message.payload);
        return;
    }
    if (message.topic == m_topics.state()) {
        if (const auto state = RigState::fromJson(message.payload)) {
            takeState(*state);
        }
        return;
    }
    if (message.topic == m_topics.events() || message.correlation == c_historyCorrelation ||
        message.correlation == c_levelsCorrelation) {
        const auto changes = RigChanges::fromJson(message.payload);
        if (!changes || changes->session != m_session) {
            return;
        }
        if (message.correlation == c_levelsCorrelation) {
            m_levelsAfterLoss = *changes;
            settleLines();
        } else if (changes->next) {
            takeHistory(*changes);
        } else {
            takeEvents(*changes);
        }
        return;
    }
    const QJsonObject answer = QJsonDocument::fromJson(message.payload).object();
    takeAnswer(message.correlation.toULongLong(), answer);
}

void RigDevice::takeDescription(const QByteArray& payload)
{
    const QJsonArray described =
        QJsonDocument::fromJson(payload).object().value(QStringLiteral("lines")).toArray();
    QHash<QString, int> indexes;
    for (int index = 0; index < described.size(); ++index) {
        indexes.insert(described.at(index).toObject().value(QStringLiteral("name")).toString(), index);
    }
    m_lineNumbers.clear();
    for (int line = 0; line < m_setup.lines.size(); ++line) {
        const QString& there = m_setup.lines.at(line).there;
        const auto index = indexes.constFind(there);
        if (index != indexes.constEnd()) {
            m_lineNumbers.insert(*index, line);
        } else {
            setUnreadable(line, {DFailure::Kind::RefusedByDevice,
                                 wording(R"(line "%1": the rig "%2" has no line "%3")")
                                     .arg(lines().at(line).name, m_setup.broker.rig, there)});
        }
    }
    m_isDescribed = true;
    catchUp();
}

void RigDevice::takeState(const RigState& state)
{
    m_isOnline = state.isOnline();
    if (!m_isOnline) {
        lose(wording(R"(the rig "%1" is %2)").arg(m_setup.broker.rig, DWording::told(state.state)));
        return;
    }
    if (m_session != state.session) {
        if (isConnected()) { // what it did last, and what it did with requests, nobody knows
            lose(wording(R"(the rig "%1" has begun anew)").arg(m_setup.broker.rig));
        }
        m_session = state.session;
        m_next = 0;
        m_unsettled.clear();
        m_levelsAfterLoss.reset();
    }
    catchUp();
}

/// Asks for the changes that are missing, or for the levels where none are known.
void RigDevice::catchUp()
{
    if (!m_isOnline || !m_isDescribed) {
        return;
    }
    m_isCurrent = false;
    ask(m_next, c_historyCorrelation);
    if (!m_unsettled.isEmpty() && !m_levelsAfterLoss) {
        askLevels();
    }
    loseAfter(c_patienceUs, wording(R"(the rig "%1" does not answer)").arg(m_setup.broker.rig));
}

/// The history answers who asks from 0 on with the levels.
void RigDevice::askLevels()
{
    ask(0, c_levelsCorrelation);
}

void RigDevice::ask(quint64 from, const QByteArray& correlation)
{
    BrokerMessage question;
    question.topic = m_topics.history();
    question.payload =
        toText({{QStringLiteral("session"), m_session}, {QStringLiteral("from"), static_cast<qint64>(from)}});
    question.responseTopic = m_topics.answer(m_client);
    question.correlation = correlation;
    m_link->publish(question);
}

void RigDevice::takeEvents(const RigChanges& events)
{
    if (!isConnected() || m_next == 0 || events.end() <= m_next) {
        return; // the levels come first, and what comes twice is known
    }
    if (events.first <= m_next + events.lost) {
        apply(events);
        setCurrent();
    } else if (m_isCurrent) {
        catchUp();
    }
}

void RigDevice::takeHistory(const RigChanges& history)
{
    const bool begins = m_next == 0;
    if (m_isCurrent || begins == history.levels.isEmpty()) {
        return; // the answer to an earlier question
    }
    scheduler()->cancel(std::exchange(m_patience, {}));
    if (begins) {
        for (const RigChange& level : history.levels) {
            setLevelOf(level);
        }
        m_next = history.first;
    }
    if (!isConnected()) {
        setConnected(scheduler()->now());
        const auto early = std::exchange(m_early, {});
        for (const auto& [id, request] : early) {
            request();
        }
    }
    apply(history);
    if (history.changes.isEmpty()) {
        setCurrent();
    } else {
        catchUp(); // until nothing more comes, or what comes continues here
    }
}

/// Nothing is missing any more.
void RigDevice::setCurrent()
{
    m_isCurrent = true;
    scheduler()->cancel(std::exchange(m_patience, {}));
}

void RigDevice::apply(const RigChanges& changes)
{
    if (changes.first > m_next) {
        tellLost(changes.first);
    }
    quint64 number = changes.first;
    for (const RigChange& change : changes.changes) {
        if (number++ >= m_next) {
            setLevelOf(change);
        }
    }
    m_next = std::max(m_next, changes.end());
    settleLines();
}

/// A line that has not changed since the loss has the level that the rig told of it, once all changes up to
/// then are known here.
void RigDevice::settleLines()
{
    if (!m_levelsAfterLoss || m_levelsAfterLoss->first > m_next) {
        return;
    }
    const RigChanges told = *std::exchange(m_levelsAfterLoss, {});
    if (told.first < m_lossEnd) { // of before the last loss
        askLevels();
        return;
    }
    for (const RigChange& level : told.levels) {
        if (m_unsettled.contains(m_lineNumbers.value(level.line, -1))) {
            setLevelOf(level);
        }
    }
    m_unsettled.clear();
}

void RigDevice::setLevelOf(const RigChange& change)
{
    const auto line = m_lineNumbers.constFind(change.line);
    if (line == m_lineNumbers.constEnd()) {
        return;
    }
    m_unsettled.remove(*line);
    const DLine& told = lines().at(*line);
    if (change.level > told.highestLevel()) {
        setUnreadable(*line, {DFailure::Kind::RefusedByDevice,
                              wording(R"(line "%1": expected a level from 0 to %2 of the rig "%3", found %4)")
                                  .arg(told.name, told.highestLevel(), m_setup.broker.rig, change.level)});
    } else if (change.level >= 0) {
        setLevel(*line, change.level, steadyTime(change.timeUs));
    } else {
        setUnreadable(
            *line, {DFailure::Kind::DeviceUnreachable,
                    wording(R"(line "%1" is not known to the rig "%2")").arg(told.name, m_setup.broker.rig)});
    }
}

/// The lost changes, up to the number end, may have left any line at another level.
void RigDevice::tellLost(quint64 end)
{
    const quint64 count = end - m_next;
    m_lossEnd = end;
    if (m_unsettled.isEmpty()) {
        askLevels();
    }
    QMap<int, LineLevel> present;
    for (const int line : qAsConst(m_lineNumbers)) {
        m_unsettled.insert(line);
        present.insert(line, {level(line), scheduler()->now(), isKnown(line)});
    }
    listener().changesLeftOut(count, 0, present); // since the last change of each, as far as is known here
    listener().failureTold(changesLeftOutText(count));
}

qint64 RigDevice::steadyTime(qint64 wallClockUs) const
{
    return wallClockUs - scheduler()->wallClock(0);
}

/// The rig itself checks the arguments, and knows the directions.
void RigDevice::request(quint64 id, const QString& instruction, const QVariantMap& arguments)
{
    if (state() == DDevice::State::Closed) {
        m_early.emplace(id, [=] { this->request(id, instruction, arguments); });
        return;
    }
    const QString channelKey = QStringLiteral("channel");
    const QString channel = arguments.value(channelKey).toString();
    const bool isForRig = instruction == QLatin1String("getValue") ||
                          instruction == QLatin1String("setValues") ||
                          instruction == QLatin1String("setBlink");
    const int line = lineNamed(channel);
    if (!isConnected() || !isForRig || channel.isEmpty() || line < 0) {
        LineEngine::request(id, instruction, arguments);
        return;
    }
    constexpr int expirySeconds = 10;
    QVariantMap there = arguments;
    there.insert(channelKey, m_setup.lines.at(line).there);
    BrokerMessage order;
    order.topic = m_topics.order();
    order.payload = toText({{QStringLiteral("instruction"), instruction},
                            {QStringLiteral("arguments"), QJsonObject::fromVariantMap(there)},
                            {QStringLiteral("holder"), thisHolder()}});
    order.responseTopic = m_topics.answer(m_client);
    order.correlation = QByteArray::number(id);
    order.expirySeconds = expirySeconds;
    if (m_link->publish(order)) {
        m_requests.insert(id, channel);
    } else {
        refuse(id, wording("too much waits for the broker already"));
    }
}

void RigDevice::takeAnswer(quint64 id, const QJsonObject& answer)
{
    const auto found = m_requests.constFind(id);
    if (found == m_requests.constEnd()) {
        return;
    }
    const QString type = answer.value(QStringLiteral("type")).toString();
    const QJsonObject results = answer.value(QStringLiteral("results")).toObject();
    if (type == QLatin1String("result")) {
        QVariantMap reply;
        for (const QString& key : {QStringLiteral("value"), QStringLiteral("values")}) {
            if (results.contains(key)) {
                reply.insert(key, results.value(key).toInt());
            }
        }
        if (results.contains(QStringLiteral("channel"))) {
            reply.insert(QStringLiteral("channel"), *found);
        }
        m_requests.remove(id);
        listener().requestAnswered(id, reply, scheduler()->now());
    } else if (type == QLatin1String("failure")) {
        const QString reason = answer.value(QStringLiteral("reason")).toString();
        m_requests.remove(id);
        listener().requestRefused(
            id, {kindCalled(answer.value(QStringLiteral("kind")).toString()),
                 reason.isEmpty() ? wording(R"(the rig "%1" does not say why)").arg(m_setup.broker.rig)
                                  : DWording::told(reason)});
    }
}

void RigDevice::cancel(quint64 id)
{
    if (m_requests.remove(id) > 0) {
        withdraw(id);
    }
    m_early.erase(id);
    LineEngine::cancel(id);
}

/// What has been told as failed is not to be carried out when the broker is back.
void RigDevice::withdraw(quint64 id)
{
    m_link->withdraw(m_topics.order(), QByteArray::number(id));
}

/// Requests that drive a line go to the rig.
DFailure RigDevice::drive(int line, int level, qint64 timeUs)
{
    Q_UNUSED(line)
    Q_UNUSED(level)
    Q_UNUSED(timeUs)
    return unreachable();
}
