#include "order_rules.h"

#include "reply_shapes.h"
#include "steady_clock.h"
#include "text.h"

#include <algorithm>
#include <limits>

using namespace model;
using Deed = InvocationPlan::Deed;
using Wants = InvocationPlan::Wants;
using Cancel = Request::Cancel;

namespace {

constexpr qint64 c_never = std::numeric_limits<qint64>::max();
constexpr int c_replyTimeoutMs = 4000;
constexpr std::size_t c_recentRequests = 12;

bool hasDue(const Request& request)
{
    return !request.heard && request.deadlineMs <= steady_clock::nowMs();
}

bool isAnswered(const Request& request)
{
    const auto& answers = request.device->answers;
    return std::any_of(answers.cbegin(), answers.cend(),
                       [&request](const Answer& answer) { return answer.request.get() == &request; });
}

} // namespace

bool Order::isListening() const
{
    return std::any_of(requests.cbegin(), requests.cend(),
                       [](const auto& request) { return request->recurring; });
}

void OrderRules::require(bool holds, const char* rule, const Order& order) const
{
    m_journal.require(holds, "order %1 (%2): %3"_q.arg(QString::number(order.id), order.plan.command,
                                                       QString::fromUtf8(rule)));
}

void OrderRules::must(Order& order, const char* kind, bool success, const QString& reason) const
{
    order.outcomes.push_back({QString::fromUtf8(kind), success, reason});
}

std::shared_ptr<Order> OrderRules::makeOrder(quint64 id, const InvocationPlan& plan,
                                             const std::shared_ptr<Tool>& tool)
{
    auto order = std::make_shared<Order>();
    order->id = id;
    order->plan = plan;
    order->tool = tool;
    m_orders.emplace(id, order);
    return order;
}

void OrderRules::start(Order& order)
{
    if (order.started) {
        return;
    }
    order.started = true;
    if (order.tool->closed) {
        must(order, "closed", false, "the tool was closed"_q);
    } else if (order.plan.deed == Deed::RefusedByHost) {
        must(order, "refused", false, order.plan.refusal);
    }
}

void OrderRules::stop(Order& order)
{
    if (order.decided) {
        return;
    }
    order.started = true;
    order.stopped = true;
    order.outcomes.clear();
    if (order.isListening()) {
        must(order, "stopped listening", true, QString());
    } else {
        must(order, "stopped", false, "stopped before it was complete"_q);
    }
}

void OrderRules::destroy(Order& order)
{
    order.silent = true;
    if (order.isRunning()) {
        order.stopped = true;
        order.outcomes.clear();
        must(order, "destroyed", false, QString());
    }
}

void OrderRules::closeTool(const std::shared_ptr<Tool>& tool)
{
    tool->closed = true;
    for (const auto& [id, order] : m_orders) {
        if (order->tool == tool && order->isRunning()) {
            must(*order, "closed", false, "the tool was closed"_q);
        }
    }
}

void OrderRules::answer(Device& device, quint64 request, const Answer& answer)
{
    const auto found = m_requests.find(request);
    if (found == m_requests.end() || found->second->device.get() != &device) {
        return;
    }
    if (found->second->over) {
        found->second->cancel = Cancel::Possible;
    } else {
        device.answers.push_back(answer);
        device.answers.back().request = found->second;
    }
}

void OrderRules::disconnect(Device& device, const QString& problem)
{
    device.disconnecting = device.connected;
    device.connected = false;
    device.problem = problem;
}

void OrderRules::connect(Device& device)
{
    device.connected = true;
}

void OrderRules::destroyDevice(Device& device)
{
    device.going = true;
    device.connected = false;
    device.answers.clear();
    for (auto known = m_requests.begin(); known != m_requests.end();) {
        const RequestPointer request = known->second;
        const bool here = request->device.get() == &device;
        if (here && !request->over && request->order->isRunning()) {
            must(*request->order, "device gone", false, "the device is gone"_q);
        }
        request->atDevice = request->atDevice && !here;
        request->cancel = here ? Cancel::NotDue : request->cancel;
        known = here && request->over ? m_requests.erase(known) : std::next(known);
    }
}

void OrderRules::commandMade(Order& order)
{
    require(order.isRunning() && order.outcomes.empty(), "a command was made that must not run", order);
    require(!order.made, "a second command was made", order);
    order.made = true;
}

void OrderRules::executeBegins(Order& order)
{
    require(order.made, "executed without its command", order);
    if (order.isRunning() && !order.tool->closed) {
        errorReports += order.plan.errorReports;
        order.reported = order.plan.deed == Deed::ReportsAtOnce;
    }
}

void OrderRules::executeEnds(Order& order, bool accepted)
{
    if (order.plan.deed == Deed::Pulses && order.sent > 0 && order.plan.pulseMs < 0) {
        ++timerWarnings;
    }
    if (!order.isRunning()) {
        return;
    }
    require(accepted == (order.plan.deed != Deed::RefusedByCommand), "commandExecute answers wrongly", order);
    if (!accepted) {
        must(order, "refused by its command", false, "the command refused to run"_q);
    } else if (order.sent == 0 && !order.reported) {
        must(order, "sent nothing", false, "the command sent no device request"_q);
    } else {
        if (order.plan.deed == Deed::Pulses && order.plan.pulseMs >= 0) {
            order.pulseMs = steady_clock::nowMs() + order.plan.pulseMs;
        }
        completeOrWait(order);
    }
}

void OrderRules::sendBegins(Order& order, const QString& instruction, const QVariantMap& arguments,
                            int timeoutMs)
{
    if (!order.isRunning()) {
        m_sending.push_back(nullptr);
        return;
    }
    const bool plainLimit = order.plan.command != "survey"_q;
    require(timeoutMs == (plainLimit ? c_replyTimeoutMs : order.plan.timeoutsMs.value(order.sent)),
            "a request has another time limit", order);
    if (order.plan.deed == Deed::Pulses && order.sent > 0) {
        require(order.pulseMs >= 0 && order.pulseMs <= steady_clock::nowMs(), "a pulse ends early", order);
        order.pulseMs = -1;
        order.reported = true;
    }
    ++order.sent;
    auto request = std::make_shared<Request>();
    request->order = &order;
    request->device = order.tool->device;
    request->instruction = instruction;
    request->channel = arguments.value("channel"_q).toString();
    request->timeoutMs = timeoutMs;
    request->deadlineMs = timeoutMs > 0 ? steady_clock::nowMs() + timeoutMs : c_never;
    request->recurring = order.plan.deed == Deed::Listens;
    order.requests.push_back(request);
    m_sending.push_back(request);
    if (request->device == nullptr) {
        must(order, "no device", false, "the tool has no device"_q);
    } else if (request->device->going) {
        must(order, "device gone", false, "the device is gone"_q);
    } else if (!request->device->connected) {
        request->device->answers.push_back({request, true, {}, request->device->problem});
    }
}

void OrderRules::requestArrives(const Device& device, quint64 id)
{
    const bool expected = !m_sending.empty() && m_sending.back() != nullptr &&
                          m_sending.back()->device.get() == &device && device.connected &&
                          m_sending.back()->id == 0;
    m_journal.require(expected, "a device gets a request that no order sends to it"_q);
    m_journal.require(id > m_lastRequest, "the identifiers of requests do not rise"_q);
    m_lastRequest = id;
    const RequestPointer request = m_sending.back();
    request->id = id;
    request->atDevice = true;
    m_requests.emplace(id, request);
    m_recent.push_back(id);
    if (m_recent.size() > c_recentRequests) {
        m_recent.erase(m_recent.begin());
    }
}

void OrderRules::sendEnds(quint64 id)
{
    const RequestPointer request = m_sending.back();
    m_sending.pop_back();
    m_journal.require((id == 0) == (request == nullptr), "0 stands for a request that is not sent"_q);
    if (request == nullptr) {
        return;
    }
    const bool couldArrive = request->device != nullptr && request->id != 0;
    m_journal.require(!couldArrive || request->id == id, "a request has two identifiers"_q);
    if (!couldArrive) {
        m_journal.require(request->device == nullptr || !request->device->connected || request->over,
                          "a request did not reach its device"_q);
        m_journal.require(id > m_lastRequest, "the identifiers of requests do not rise"_q);
        m_lastRequest = id;
        request->id = id;
        if (!request->over) {
            m_requests.emplace(id, request);
        }
    }
}

/// Answers to requests that are over are dropped.
void OrderRules::dropOver(Device& device)
{
    while (!device.answers.empty() && device.answers.front().request->over) {
        device.answers.pop_front();
    }
}

/// The request is over; cancel says what its device is to be told. It need not be told when an answer is on
/// its way, which may come while the order ends.
void OrderRules::retire(const RequestPointer& request, Cancel cancel)
{
    request->over = true;
    request->cancel = request->atDevice ? cancel : Cancel::NotDue;
    if (request->cancel == Cancel::Due && isAnswered(*request)) {
        request->cancel = Cancel::Possible;
    }
    auto& requests = request->order->requests;
    requests.erase(std::remove(requests.begin(), requests.end(), request), requests.end());
    if (request->cancel == Cancel::NotDue) {
        m_requests.erase(request->id);
    }
}

void OrderRules::replyBegins(Order& order, quint64 id, const QVariantMap& reply)
{
    ++replies;
    require(order.isRunning(), "a reply after the end", order);
    const auto found = m_requests.find(id);
    require(found != m_requests.end() && !found->second->over && found->second->order == &order,
            "a reply to a request that is over", order);
    const RequestPointer request = found->second;
    Device& device = *request->device;
    dropOver(device);
    require(!device.answers.empty() && device.answers.front().request == request &&
                !device.answers.front().failed && device.answers.front().reply == reply,
            "not the reply whose turn it is", order);
    device.answers.pop_front();
    request->heard = true;
    if (!request->recurring) {
        request->atDevice = false;
        retire(request, Cancel::NotDue);
    }
}

/// The order may have ended since the reply came to its command.
void OrderRules::delegateRuns(Order& order, const QVariantMap& reply)
{
    if (!order.isRunning()) {
        return;
    }
    const bool accepted = accepts(order, reply);
    errorReports += accepted ? 0 : 1;
    if (accepted && order.plan.command == "getValue"_q) {
        order.value = static_cast<int>(static_cast<quint16>(reply.value("value"_q).toUInt()));
    }
    if (accepted && (order.plan.deed == Deed::Asks || order.sent == 2)) {
        order.reported = true;
    }
}

/// What it asks for the second time, it asks to write; every reply to that will do.
bool OrderRules::accepts(const Order& order, const QVariantMap& reply)
{
    const auto shape = std::find_if(replyShapes().cbegin(), replyShapes().cend(),
                                    [&reply](const ReplyShape& known) { return known.reply == reply; });
    switch (order.plan.deed == Deed::AsksTwice && order.sent == 2 ? Wants::Anything : order.plan.wants) {
    case Wants::Anything:
        return true;
    case Wants::Value:
        return shape->hasValue;
    case Wants::OneReading:
        return shape->hasOneReading;
    case Wants::ReadingOfAnyKind:
        return shape->hasReadingOfAnyKind;
    }
    return false;
}

void OrderRules::replyEnds(Order& order, quint64 id, bool accepted)
{
    if (!order.isRunning()) {
        return;
    }
    const auto request = m_requests.find(id);
    const bool recurs = request != m_requests.end() && request->second->recurring;
    if (accepted) {
        completeOrWait(order);
    } else if (recurs) {
        ++order.rejected;
    } else {
        must(order, "reply rejected", false, "reply rejected"_q);
    }
}

void OrderRules::completeOrWait(Order& order) const
{
    if (!order.requests.empty()) {
        return;
    }
    if (order.reported) {
        must(order, "success", true, QString());
    } else if (order.pulseMs < 0) {
        must(order, "incomplete", false, "the command waits for nothing more"_q);
    }
}

void OrderRules::cancelBegins(const Device& device, quint64 id)
{
    const auto found = m_requests.find(id);
    m_journal.require(found != m_requests.end() && found->second->atDevice &&
                          found->second->device.get() == &device,
                      "a device cancels request %1, which it does not handle"_q.arg(id));
    const RequestPointer request = found->second;
    request->atDevice = false;
    if (request->over) {
        m_journal.require(request->cancel != Cancel::NotDue, "request %1 is cancelled twice"_q.arg(id));
        request->cancel = Cancel::NotDue;
        m_requests.erase(found);
    } else if (!device.disconnecting) {
        m_journal.require(hasDue(*request), "request %1 is cancelled without a cause"_q.arg(id));
        for (const auto& [otherId, other] : m_requests) {
            m_journal.require(other->over || other->heard || !other->atDevice ||
                                  other->device != request->device ||
                                  other->deadlineMs >= request->deadlineMs,
                              "request %1 is forgotten at its deadline"_q.arg(otherId));
        }
        request->timedOut = true;
    }
}

void OrderRules::cancelEnds(Device& device, quint64 id)
{
    const auto request = m_requests.find(id);
    if (device.disconnecting && request != m_requests.end() && !request->second->over) {
        device.answers.push_back({request->second, true, {}, device.problem});
    }
}

Outcome OrderRules::timedOut(const Request& request)
{
    const QString channel =
        request.channel.isEmpty() ? QString() : " of channel \"%1\""_q.arg(request.channel);
    return {"deadline"_q, false,
            "no reply to \"%1\"%2 within %3 ms"_q.arg(request.instruction, channel,
                                                      QString::number(request.timeoutMs))};
}

/// Adds the failures that may end the order now. Returns its request whose failure is next to be delivered,
/// or null.
OrderRules::RequestPointer OrderRules::addCausesOfFailure(Order& order) const
{
    RequestPointer failed;
    for (const RequestPointer& request : order.requests) {
        if (request->device == nullptr) {
            continue;
        }
        if (request->timedOut || (!request->atDevice && hasDue(*request))) {
            order.outcomes.push_back(timedOut(*request));
        }
        dropOver(*request->device);
        const auto& answers = request->device->answers;
        if (!answers.empty() && answers.front().failed && answers.front().request == request) {
            must(order, "device failure", false, answers.front().reason);
            failed = request;
        }
    }
    return failed;
}

/// The end of the order has begun, and with it that of its requests. Where it may have had several causes, a
/// failed request may have been over at its device or not.
void OrderRules::decide(Order& order, bool ok)
{
    require(order.isRunning(), "a second end", order);
    const RequestPointer failed = order.stopped ? nullptr : addCausesOfFailure(order);
    order.decided = true;
    const bool certain = order.outcomes.size() == 1;
    auto& outcomes = order.outcomes;
    outcomes.erase(std::remove_if(outcomes.begin(), outcomes.end(),
                                  [ok](const Outcome& outcome) { return outcome.success != ok; }),
                   outcomes.end());
    require(!outcomes.empty(), ok ? "success without a cause" : "failure without a cause", order);
    ++ends[outcomes.front().kind];
    const auto requests = order.requests;
    for (const RequestPointer& request : requests) {
        if (request == failed) {
            request->atDevice = request->atDevice && !certain;
        }
        retire(request, request == failed ? Cancel::Possible : Cancel::Due);
    }
}

void OrderRules::finishBegins(Order& order, bool ok)
{
    require(order.made && !order.finished, "its command is finished twice", order);
    order.finished = true;
    decide(order, ok);
}

void OrderRules::finishedTold(Order& order, bool success, const QString& reason)
{
    require(!order.told, "it says twice that it has finished", order);
    require(!order.silent, "it speaks while it is destroyed", order);
    order.told = true;
    if (!order.made) {
        decide(order, success);
    }
    require(order.decided, "it has finished without finishing its command", order);
    const bool expected =
        std::any_of(order.outcomes.cbegin(), order.outcomes.cend(), [&](const Outcome& outcome) {
            return outcome.success == success &&
                   (success ? reason.isEmpty() : reason.contains(outcome.reason));
        });
    require(expected,
            qPrintable("it ends with \"%1\", expected \"%2\""_q.arg(reason, order.outcomes.front().reason)),
            order);
}

void OrderRules::orderGone(Order& order) const
{
    require(!order.started || order.decided, "destroyed without its end", order);
    require(!order.made || order.finished, "destroyed without finishing its command", order);
    for (const auto& [id, request] : m_requests) {
        require(request->order != &order || request->cancel == Cancel::Possible,
                "destroyed with a request at its device", order);
    }
    order.gone = true;
}

/// Their commands may be on the stack up to now, and their requests may be told of.
void OrderRules::forgetGone()
{
    for (auto known = m_requests.begin(); known != m_requests.end();) {
        known = known->second->cancel == Cancel::Possible ? m_requests.erase(known) : std::next(known);
    }
    for (auto known = m_orders.begin(); known != m_orders.end();) {
        known = known->second->gone ? m_orders.erase(known) : std::next(known);
    }
}

void OrderRules::checkOrder(const Order& order) const
{
    require(order.outcomes.empty() || order.decided, "it has not ended", order);
    require(!order.decided || order.told, "it has not said that it has finished", order);
    require(!order.isRunning() || order.pulseMs < 0 || order.pulseMs > steady_clock::nowMs(),
            "its pulse has not ended", order);
    for (const RequestPointer& request : order.requests) {
        require(!hasDue(*request), "a deadline has passed without effect", order);
    }
}

void OrderRules::checkDevice(Device& device) const
{
    dropOver(device);
    m_journal.require(device.answers.empty(),
                      "an answer to request %1 was not delivered"_q.arg(
                          device.answers.empty() ? 0 : device.answers.front().request->id));
    for (const auto& [id, request] : m_requests) {
        m_journal.require(request->device.get() != &device || request->cancel != Cancel::Due,
                          "the device was not told that request %1 is over"_q.arg(id));
    }
}

int OrderRules::pendingRequests(const Device& device) const
{
    return static_cast<int>(
        std::count_if(m_requests.cbegin(), m_requests.cend(), [&device](const auto& known) {
            return !known.second->over && known.second->device.get() == &device;
        }));
}

std::vector<quint64> OrderRules::waitingRequests(const Device& device) const
{
    std::vector<quint64> waiting;
    for (const auto& [id, request] : m_requests) {
        if (!request->over && request->atDevice && request->device.get() == &device) {
            waiting.push_back(id);
        }
    }
    return waiting;
}

int OrderRules::workingCommands() const
{
    return static_cast<int>(std::count_if(m_orders.cbegin(), m_orders.cend(), [](const auto& known) {
        return known.second->made && known.second->isRunning();
    }));
}

std::vector<qint64> OrderRules::dueTimes() const
{
    std::vector<qint64> times;
    for (const auto& [id, order] : m_orders) {
        if (order->isRunning() && order->pulseMs >= 0) {
            times.push_back(order->pulseMs);
        }
    }
    for (const auto& [id, request] : m_requests) {
        if (!request->over && !request->heard && request->deadlineMs != c_never) {
            times.push_back(request->deadlineMs);
        }
    }
    return times;
}
