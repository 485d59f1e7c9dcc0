#include "order_desk.h"

#include <configuration/bench.h>
#include <configuration/json_text.h>
#include <plugin_management/d_order.h>
#include <process/diagnostics.h>

#include <algorithm>
#include <utility>

namespace {

constexpr int c_requestTimeoutMs = 10000;

/// The level that a plain text stands for; nothing for another text.
std::optional<int> levelOf(const QByteArray& payload)
{
    constexpr int highest = 65535;
    const QByteArray text = payload.trimmed().toLower();
    if (text == "on" || text == "true") {
        return 1;
    }
    if (text == "off" || text == "false") {
        return 0;
    }
    bool isNumber = false;
    const int level = text.toInt(&isNumber);
    return isNumber && level >= 0 && level <= highest ? std::optional<int>(level) : std::nullopt;
}

/// True when the order only ends another one.
bool onlyStops(const RigOrder& order, const DTool* tool)
{
    if (order.kind != RigOrder::Kind::Command || tool == nullptr) {
        return false;
    }
    const QVector<DCommandDescription> commands = tool->commands();
    return std::any_of(commands.cbegin(), commands.cend(), [&order](const DCommandDescription& command) {
        return !command.stopName.isEmpty() && command.stopName == order.name;
    });
}

/// The end of a request to the device, in the form of an order's end.
Json endOf(const RigOrder& request, int number, const QVariantMap& reply, const DFailure& failure)
{
    const QString channel = request.arguments.value(QStringLiteral("channel")).toString();
    Json json = {{"type", failure ? "failure" : "result"},
                 {"order", number},
                 {"tool", Json()},
                 {"command", toJson(request.name)},
                 {"channel", channel.isEmpty() ? Json() : toJson(channel)},
                 {"arguments", toJson(QVariant(request.arguments))}};
    if (failure) {
        json["kind"] = toJson(failure.kindName());
        json["reason"] = toJson(failure.text.english());
    }
    json["results"] = toJson(QVariant(reply));
    return json;
}

} // namespace

OrderDesk::OrderDesk(const Bench& bench, const RigTopics& topics, const RigForms& forms, BrokerLink* link,
                     bool takesOrders)
    : m_bench(bench)
    , m_topics(topics)
    , m_forms(forms)
    , m_link(link)
    , m_takesOrders(takesOrders)
    , m_lease(bench.device().scheduler())
{
    connect(link, &BrokerLink::unheard, this, &OrderDesk::stopUnheard);
}

OrderDesk::~OrderDesk() = default;

/// One that the broker has kept is nobody's order of now.
void OrderDesk::takeOrder(const BrokerMessage& message)
{
    if (message.retained) {
        return;
    }
    if (!message.responseTopic.isEmpty() && !m_topics.mayAnswer(message.responseTopic)) {
        tell(QStringLiteral("an order is not taken: its answer may not go to \"%1\"")
                 .arg(QString::fromUtf8(message.responseTopic)));
        return;
    }
    if (!m_taken.isNew(message.responseTopic, message.correlation)) {
        return;
    }
    const Answer answer(message, m_link);
    if (!answer.hasRoom()) { // but for so short an answer
        answer.refuse("busy", QStringLiteral("too much waits for the broker already"));
        return;
    }
    QString problem;
    const std::optional<RigOrder> order = readRigOrder(message.payload, &problem);
    if (!order) {
        answer.refuse("syntax", problem);
    } else {
        carryOut(*order, answer);
    }
}

void OrderDesk::carryOut(const RigOrder& order, const Answer& answer)
{
    const bool onlyAsks =
        order.kind == RigOrder::Kind::Instruction && order.name == QLatin1String("getValue");
    const QString holder = m_lease.refusalOf(order.holder);
    if (!m_takesOrders && !onlyAsks) {
        answer.refuse("readOnly", QStringLiteral("this rig takes no orders"));
    } else if (!holder.isEmpty() && !onlyAsks) {
        answer.refuse("leased", holder);
    } else if (order.kind == RigOrder::Kind::Lease || order.kind == RigOrder::Kind::Release) {
        answerLease(order, answer);
    } else if (isFull(order) && !onlyStops(order, m_bench.findTool(order.tool))) {
        answer.refuse("busy", QStringLiteral("%1 orders run already").arg(m_running.size() + m_requests));
    } else if (order.kind == RigOrder::Kind::Instruction) {
        runInstruction(order, answer);
    } else {
        runCommand(order, answer);
    }
}

/// Another order would be too much.
bool OrderDesk::isFull(const RigOrder& order) const
{
    return m_running.size() + m_requests >= c_mostRunning || m_held + order.size > c_mostHeld;
}

void OrderDesk::answerLease(const RigOrder& order, const Answer& answer)
{
    const QString refusal = order.kind == RigOrder::Kind::Lease ? m_lease.take(order.holder, order.minutes)
                                                                : m_lease.release(order.holder);
    if (refusal.isEmpty()) {
        answer.send({{"type", "lease"}, {"lease", m_lease.toJson()}});
    } else {
        answer.refuse("leased", refusal);
    }
}

void OrderDesk::runCommand(const RigOrder& order, const Answer& answer)
{
    DTool* tool = m_bench.findTool(order.tool);
    if (tool == nullptr) {
        answer.refuse("usage", QStringLiteral("there is no tool \"%1\"").arg(order.tool));
        return;
    }
    const int number = ++m_last;
    auto made = std::make_unique<DOrder>(tool, order.name, order.arguments);
    DOrder* running = made.get();
    m_running.emplace(number, Running{std::move(made), answer, order.size});
    m_held += order.size;
    running->start();
    m_forms.follow(running, number, [this, number](const Json& line) { passOn(number, line); });
    if (running->isListening() && answer.topic().isEmpty()) {
        running->stop(); // nobody would ever hear of it
    }
    if (running->state() == DOrder::State::Finished) {
        orderEnded(number);
    } else {
        connect(running, &DOrder::finished, this, [this, number] { orderEnded(number); });
    }
}

/// Whoever sends the same again and again is told of once.
void OrderDesk::tell(const QString& text)
{
    if (std::exchange(m_told, text) != text) {
        diagnostic(inOneLine(text));
    }
}

/// What is left out is told before what comes next; an end always goes out.
void OrderDesk::passOn(int number, const Json& line)
{
    Running& running = m_running.at(number);
    if (line.at("type") == "event" && !running.answer.hasRoom()) {
        ++running.leftOut;
        return;
    }
    if (running.leftOut > 0) {
        Json lost = line;
        for (const char* key : {"time", "results", "kind", "reason", "rejected"}) {
            lost.erase(key);
        }
        lost["type"] = "lost";
        lost["lost"] = std::exchange(running.leftOut, 0);
        lost["reason"] = "the broker was too slow";
        running.answer.send(lost);
    }
    running.answer.send(line);
}

void OrderDesk::orderEnded(int number)
{
    const auto ended = m_running.find(number);
    m_held -= ended->second.size;
    ended->second.order.release()->deleteLater(); // its signal is on the stack
    m_running.erase(ended);
}

void OrderDesk::stopThose(const std::function<bool(const Running&)>& which)
{
    std::vector<DOrder*> chosen;
    for (const auto& [number, running] : m_running) {
        if (which(running)) {
            chosen.push_back(running.order.get());
        }
    }
    for (DOrder* order : chosen) {
        order->stop();
    }
}

void OrderDesk::stopUnheard(const QByteArray& topic)
{
    stopThose([&topic](const Running& running) {
        return running.answer.topic() == topic && running.order->isListening();
    });
}

void OrderDesk::stopAll()
{
    stopThose([](const Running& /*running*/) { return true; });
    const auto requests = findChildren<DeviceRequest*>();
    for (DeviceRequest* request : requests) {
        request->stop(wording("the rig ends"));
    }
}

void OrderDesk::runInstruction(const RigOrder& order, const Answer& answer)
{
    m_held += order.size;
    request(order.name, order.arguments,
            [this, order, answer, number = ++m_last](const QVariantMap& reply, const DFailure& failure) {
                m_held -= order.size;
                answer.send(endOf(order, number, reply, failure));
            });
}

void OrderDesk::request(const QString& instruction, const QVariantMap& arguments, DeviceRequest::Done done)
{
    ++m_requests;
    auto* request = new DeviceRequest(
        &m_bench.device(), [this, done = std::move(done)](const QVariantMap& reply, const DFailure& failure) {
            --m_requests;
            done(reply, failure);
        });
    request->setParent(this);
    request->send(instruction, arguments, c_requestTimeoutMs);
}

void OrderDesk::takeLevel(const BrokerMessage& message)
{
    const QString line = m_topics.lineOfSet(message.topic);
    const std::optional<int> level = levelOf(message.payload);
    QString refusal = m_lease.refusalOf(QString());
    if (message.retained || !m_takesOrders) {
        return;
    }
    if (refusal.isEmpty() && m_running.size() + m_requests >= c_mostRunning) {
        refusal = QStringLiteral("%1 orders run already").arg(c_mostRunning);
    }
    if (refusal.isEmpty() && !level) {
        refusal = QStringLiteral("expected ON, OFF, or a number from 0 to 65535");
    }
    if (!refusal.isEmpty()) {
        tell(QStringLiteral("line \"%1\" is not set: %2").arg(line, refusal));
        return;
    }
    request(QStringLiteral("setValues"),
            {{QStringLiteral("channel"), line}, {QStringLiteral("values"), *level}},
            [this, line](const QVariantMap& /*reply*/, const DFailure& failure) {
                if (failure) {
                    tell(QStringLiteral("line \"%1\" is not set: %2").arg(line, failure.text.english()));
                }
            });
}
