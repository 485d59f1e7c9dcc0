#pragma once

#include "journal.h"
#include "literals.h"
#include "model_state.h"
#include "reply_shapes.h"

#include <QMap>

#include <algorithm>
#include <limits>
#include <map>

/// The rules that orders and devices keep. It hears what the run does and what the host does in return, and
/// ends the process where the two do not fit.
class OrderRules
{
    using Deed = InvocationPlan::Deed;
    using Wants = InvocationPlan::Wants;
    using Cancel = Request::Cancel;
    using Kind = DFailure::Kind;

public:
    /// The times are those of clock.
    OrderRules(const Journal& journal, const DScheduler& clock)
        : m_journal(journal)
        , m_clock(clock)
    {}

    // What the run does, told before it happens.
    std::shared_ptr<Order> makeOrder(quint64 id, const InvocationPlan& plan,
                                     const std::shared_ptr<Tool>& tool)
    {
        auto order = std::make_shared<Order>();
        order->id = id;
        order->plan = plan;
        order->tool = tool;
        m_orders.emplace(id, order);
        return order;
    }

    void start(Order& order)
    {
        if (order.started) {
            return;
        }
        order.started = true;
        if (order.tool->closed) {
            order.outcomes.push_back({Kind::ToolClosed, DWording::told("the tool was closed"_s)});
        } else if (order.plan.deed == Deed::RefusedByHost) {
            order.outcomes.push_back({Kind::WrongInvocation, DWording::told(order.plan.refusal)});
        } else if (order.plan.deed == Deed::Stops) {
            Order* other = orderToStop(order);
            order.outcomes.push_back(other != nullptr
                                         ? DFailure()
                                         : DFailure{Kind::RefusedByCommand, DWording::told("to stop"_s)});
            if (other != nullptr) {
                stop(*other);
            }
        }
    }

    void stop(Order& order)
    {
        if (order.decided) {
            return;
        }
        order.started = true;
        order.stopped = true;
        order.outcomes.clear();
        if (order.isListening()) {
            order.outcomes.push_back({});
        } else {
            order.outcomes.push_back({Kind::Stopped, DWording::told("stopped before it was complete"_s)});
        }
    }

    void destroy(Order& order)
    {
        order.silent = true;
        if (order.isRunning()) {
            order.stopped = true;
            order.decided = !order.made; // it stops another, which ends it
            order.outcomes.clear();
            order.outcomes.push_back({Kind::Stopped, {}});
        }
    }

    void closeTool(const std::shared_ptr<Tool>& tool)
    {
        tool->closed = true;
        for (const auto& [id, order] : m_orders) {
            if (order->tool == tool && order->made && order->isRunning()) {
                order->outcomes.push_back({Kind::ToolClosed, DWording::told("the tool was closed"_s)});
            }
        }
    }

    void answer(Device& device, quint64 request, const Answer& answer)
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

    void disconnect(Device& device, const QString& problem)
    {
        device.disconnecting = device.connected;
        device.connected = false;
        device.problem = problem;
    }

    void connect(Device& device) { device.connected = true; }

    void close(Device& device)
    {
        device.closing = device.connected;
        disconnect(device, device.connected ? "the device was closed"_s : "the device is closed"_s);
        device.connected = device.closing;
    }

    void destroyDevice(Device& device)
    {
        device.going = true;
        device.connected = false;
        device.answers.clear();
        for (auto known = m_requests.begin(); known != m_requests.end();) {
            const RequestPointer request = known->second;
            const bool here = request->device.get() == &device;
            if (here && !request->over && request->order->isRunning()) {
                request->order->outcomes.push_back(
                    {Kind::DeviceUnreachable, DWording::told("the device is gone"_s)});
            }
            request->atDevice = request->atDevice && !here;
            request->cancel = here ? Cancel::NotDue : request->cancel;
            known = here && request->over ? m_requests.erase(known) : std::next(known);
        }
    }

    // What the host does.
    void commandMade(Order& order)
    {
        require(order.isRunning() && order.outcomes.empty(), "a command was made that must not run", order);
        require(!order.made, "a second command was made", order);
        order.made = true;
        order.startNumber = ++m_lastStart;
    }

    void executeBegins(Order& order)
    {
        require(order.made, "executed without its command", order);
        if (order.isRunning() && !order.tool->closed) {
            errorReports += order.plan.errorReports;
            order.reported = order.plan.deed == Deed::ReportsAtOnce;
        }
    }

    void executeEnds(Order& order, bool accepted)
    {
        if (order.plan.deed == Deed::Pulses && order.sent > 0 && order.plan.pulseMs < 0) {
            ++timerWarnings;
        }
        if (!order.isRunning()) {
            return;
        }
        require(accepted == (order.plan.deed != Deed::RefusedByCommand), "commandExecute answers wrongly",
                order);
        if (!accepted) {
            order.outcomes.push_back(
                {Kind::RefusedByCommand, DWording::told("the command refused to run"_s)});
        } else if (order.sent == 0 && !order.reported) {
            order.outcomes.push_back(
                {Kind::NothingSent, DWording::told("the command sent no device request"_s)});
        } else {
            if (order.plan.deed == Deed::Pulses && order.plan.pulseMs >= 0) {
                order.pulseUs = m_clock.now() + order.plan.pulseMs * c_usPerMs;
            }
            completeOrWait(order);
        }
    }

    void sendBegins(Order& order, const QString& instruction, int timeoutMs)
    {
        if (!order.isRunning()) {
            m_sending.push_back(nullptr);
            return;
        }
        const bool plainLimit = order.plan.command != "survey"_s;
        require(timeoutMs == (plainLimit ? c_replyTimeoutMs : order.plan.timeoutsMs.value(order.sent)),
                "a request has another time limit", order);
        if (order.plan.deed == Deed::Pulses && order.sent > 0) {
            require(order.pulseUs && *order.pulseUs <= m_clock.now(), "a pulse ends early", order);
            order.pulseUs.reset();
            order.reported = true;
        }
        ++order.sent;
        auto request = std::make_shared<Request>();
        request->order = &order;
        request->device = order.tool->device;
        request->instruction = instruction;
        request->timeoutMs = timeoutMs;
        request->deadlineUs = timeoutMs > 0 ? m_clock.now() + timeoutMs * c_usPerMs : c_never;
        request->recurring = order.plan.deed == Deed::Listens && request->device != nullptr &&
                             !request->device->going; // the device says what recurs
        order.requests.push_back(request);
        m_sending.push_back(request);
        if (request->device == nullptr) {
            order.outcomes.push_back({Kind::DeviceUnreachable, DWording::told("the tool has no device"_s)});
        } else if (request->device->going) {
            order.outcomes.push_back({Kind::DeviceUnreachable, DWording::told("the device is gone"_s)});
            // An event loop that runs before the device is gone brings its answer.
            order.outcomes.push_back({Kind::DeviceUnreachable, DWording::told("the device is closed"_s)});
        } else if (!request->device->connected) {
            request->device->answers.push_back(
                {request, {Kind::DeviceUnreachable, DWording::told(request->device->problem)}});
        }
    }

    void requestArrives(const Device& device, quint64 id)
    {
        const bool expected = !m_sending.empty() && m_sending.back() != nullptr &&
                              m_sending.back()->device.get() == &device && device.connected &&
                              m_sending.back()->id == 0;
        m_journal.require(expected, "a device gets a request that no order sends to it"_s);
        m_journal.require(id > m_lastRequest, "the identifiers of requests do not rise"_s);
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

    void sendEnds(quint64 id)
    {
        const RequestPointer request = m_sending.back();
        m_sending.pop_back();
        m_journal.require((id == 0) == (request == nullptr), "0 stands for a request that is not sent"_s);
        if (request == nullptr) {
            return;
        }
        const bool couldArrive = request->device != nullptr && request->id != 0;
        m_journal.require(!couldArrive || request->id == id, "a request has two identifiers"_s);
        if (!couldArrive) {
            m_journal.require(request->device == nullptr || !request->device->connected || request->over,
                              "a request did not reach its device"_s);
            m_journal.require(id > m_lastRequest, "the identifiers of requests do not rise"_s);
            m_lastRequest = id;
            request->id = id;
            if (!request->over) {
                m_requests.emplace(id, request);
            }
        }
    }

    void replyBegins(Order& order, quint64 id, const QVariantMap& reply)
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
                    !device.answers.front().failure && device.answers.front().reply == reply,
                "not the reply whose turn it is", order);
        order.replyTimes.push_back(device.answers.front().timeUs);
        device.answers.pop_front();
        request->heard = true;
        if (!request->recurring) {
            request->atDevice = false;
            retire(request, Cancel::NotDue);
        }
    }

    /// The order may have ended since the reply came to its command.
    void delegateRuns(Order& order, const QVariantMap& reply)
    {
        if (!order.isRunning()) {
            return;
        }
        const bool accepted = accepts(order, reply);
        errorReports += accepted ? 0 : 1;
        if (accepted && order.plan.command == "getValue"_s) {
            order.value = static_cast<int>(static_cast<quint16>(reply.value("value"_s).toUInt()));
        }
        if (accepted && (order.plan.deed == Deed::Asks || order.sent == 2)) {
            order.reported = true;
        }
    }

    void replyEnds(Order& order, quint64 id, bool accepted)
    {
        order.replyTimes.pop_back();
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
            order.outcomes.push_back({Kind::ReplyRejected, DWording::told("reply rejected"_s)});
        }
    }

    void cancelBegins(const Device& device, quint64 id)
    {
        const auto found = m_requests.find(id);
        m_journal.require(found != m_requests.end() && found->second->atDevice &&
                              found->second->device.get() == &device,
                          "a device cancels request %1, which it does not handle"_s.arg(id));
        const RequestPointer request = found->second;
        request->atDevice = false;
        if (request->over) {
            m_journal.require(request->cancel != Cancel::NotDue, "request %1 is cancelled twice"_s.arg(id));
            request->cancel = Cancel::NotDue;
            m_requests.erase(found);
        } else if (!device.disconnecting) {
            m_journal.require(hasDue(*request), "request %1 is cancelled without a cause"_s.arg(id));
            for (const auto& [otherId, other] : m_requests) {
                m_journal.require(other->over || other->heard || !other->atDevice ||
                                      other->device != request->device ||
                                      other->deadlineUs >= request->deadlineUs,
                                  "request %1 is forgotten at its deadline"_s.arg(otherId));
            }
            request->timedOut = true;
        }
    }

    void cancelEnds(Device& device, quint64 id)
    {
        const auto request = m_requests.find(id);
        if (device.disconnecting && request != m_requests.end() && !request->second->over) {
            device.answers.push_back(
                {request->second, {Kind::DeviceUnreachable, DWording::told(device.problem)}});
        }
    }

    void finishBegins(Order& order, bool ok)
    {
        require(order.made && !order.finished, "its command is finished twice", order);
        order.finished = true;
        decide(order, ok);
    }

    void eventTold(const Order& order, qint64 timeUs) const
    {
        const qint64 expected = order.replyTimes.empty() ? m_clock.now() : order.replyTimes.back();
        require(timeUs == expected, "an event has another time than its reply", order);
    }

    void finishedTold(Order& order, const DFailure& failure)
    {
        require(!order.told, "it says twice that it has finished", order);
        require(!order.silent, "it speaks while it is destroyed", order);
        order.told = true;
        if (!order.made) {
            decide(order, !failure);
        }
        require(order.decided, "it has finished without finishing its command", order);
        const bool expected =
            std::any_of(order.outcomes.cbegin(), order.outcomes.cend(), [&failure](const DFailure& outcome) {
                return outcome.kind == failure.kind &&
                       failure.text.english().contains(outcome.text.english()) &&
                       failure.text.isEmpty() == !failure;
            });
        const DFailure& first = order.outcomes.front();
        require(expected,
                qPrintable("it ends with \"%1\" (%2), expected \"%3\" (%4)"_s.arg(
                    failure.text.english(), failure.kindName(), first.text.english(), first.kindName())),
                order);
    }

    void stateTold(Device& device) const
    {
        device.disconnecting = false;
        if (device.closing) {
            device.closing = false;
            device.connected = false;
            device.problem = "the device is closed"_s;
        }
    }

    void orderGone(Order& order) const
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
    void forgetGone()
    {
        for (auto known = m_requests.begin(); known != m_requests.end();) {
            known = known->second->cancel == Cancel::Possible ? m_requests.erase(known) : std::next(known);
        }
        for (auto known = m_orders.begin(); known != m_orders.end();) {
            known = known->second->gone ? m_orders.erase(known) : std::next(known);
        }
    }

    // What must hold when nothing is left to do.
    void checkOrder(const Order& order) const
    {
        require(order.outcomes.empty() || order.decided, "it has not ended", order);
        require(!order.decided || order.told, "it has not said that it has finished", order);
        require(!order.isRunning() || !order.pulseUs || *order.pulseUs > m_clock.now(),
                "its pulse has not ended", order);
        for (const RequestPointer& request : order.requests) {
            require(!hasDue(*request), "a deadline has passed without effect", order);
        }
    }

    void checkDevice(Device& device) const
    {
        dropOver(device);
        m_journal.require(device.answers.empty(),
                          "an answer to request %1 was not delivered"_s.arg(
                              device.answers.empty() ? 0 : device.answers.front().request->id));
        for (const auto& [id, request] : m_requests) {
            m_journal.require(request->device.get() != &device || request->cancel != Cancel::Due,
                              "the device was not told that request %1 is over"_s.arg(id));
        }
    }

    int pendingRequests(const Device& device) const
    {
        return static_cast<int>(
            std::count_if(m_requests.cbegin(), m_requests.cend(), [&device](const auto& known) {
                return !known.second->over && known.second->device.get() == &device;
            }));
    }

    int workingCommands() const
    {
        return static_cast<int>(std::count_if(m_orders.cbegin(), m_orders.cend(), [](const auto& known) {
            return known.second->made && known.second->isRunning();
        }));
    }

    const std::map<quint64, std::shared_ptr<Order>>& orders() const { return m_orders; }
    /// Requests that device handles, and whose orders wait for it.
    std::vector<quint64> waitingRequests(const Device& device) const
    {
        std::vector<quint64> waiting;
        for (const auto& [id, request] : m_requests) {
            if (!request->over && request->atDevice && request->device.get() == &device) {
                waiting.push_back(id);
            }
        }
        return waiting;
    }

    /// The latest requests, most of which are over.
    const std::vector<quint64>& recentRequests() const { return m_recent; }
    /// Times at which something falls due.
    std::vector<qint64> dueTimes() const
    {
        std::vector<qint64> times;
        for (const auto& [id, order] : m_orders) {
            if (order->isRunning() && order->pulseUs) {
                times.push_back(*order->pulseUs);
            }
        }
        for (const auto& [id, request] : m_requests) {
            if (!request->over && !request->heard && request->deadlineUs != c_never) {
                times.push_back(request->deadlineUs);
            }
        }
        return times;
    }

    QMap<QString, quint64> ends; ///< how many orders ended in each way: "success", or the kind of failure
    quint64 replies = 0;
    int errorReports = 0;  ///< that the commands must have made
    int timerWarnings = 0; ///< of Qt, about pulses of negative length

private:
    using RequestPointer = std::shared_ptr<Request>;

    static constexpr qint64 c_never = std::numeric_limits<qint64>::max();
    static constexpr int c_replyTimeoutMs = 4000;
    static constexpr qint64 c_usPerMs = 1000;
    static constexpr std::size_t c_recentRequests = 12;

    static bool isAnswered(const Request& request)
    {
        const auto& answers = request.device->answers;
        return std::any_of(answers.cbegin(), answers.cend(),
                           [&request](const Answer& answer) { return answer.request.get() == &request; });
    }

    void require(bool holds, const char* rule, const Order& order) const
    {
        m_journal.require(holds, "order %1 (%2): %3"_s.arg(QString::number(order.id), order.plan.command,
                                                           QString::fromUtf8(rule)));
    }

    bool hasDue(const Request& request) const
    {
        return !request.heard && request.deadlineUs <= m_clock.now();
    }

    /// The latest one that has such a stop name, and was given the same arguments.
    Order* orderToStop(const Order& order) const
    {
        Order* latest = nullptr;
        for (const auto& [id, other] : m_orders) {
            const QVariantMap& given = other->plan.taken;
            const QVariantMap& wanted = order.plan.taken;
            const auto has = [&given, &wanted](const QString& name) {
                return given.contains(name) && given.value(name) == wanted.value(name);
            };
            const QStringList names = wanted.keys();
            if (other->made && other->isRunning() && other->tool == order.tool &&
                stopNameOf(other->plan.command) == order.plan.command &&
                std::all_of(names.cbegin(), names.cend(), has) &&
                (latest == nullptr || other->startNumber > latest->startNumber)) {
                latest = other.get();
            }
        }
        return latest;
    }

    /// What it asks for the second time, it asks to write; every reply to that will do.
    static bool accepts(const Order& order, const QVariantMap& reply)
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

    /// The end of the order has begun, and with it that of its requests. Where it may have had several
    /// causes, a failed request may have been over at its device or not.
    void decide(Order& order, bool ok)
    {
        require(order.isRunning(), "a second end", order);
        const RequestPointer failed = order.stopped ? nullptr : addCausesOfFailure(order);
        order.decided = true;
        const bool certain = order.outcomes.size() == 1;
        auto& outcomes = order.outcomes;
        outcomes.erase(std::remove_if(outcomes.begin(), outcomes.end(),
                                      [ok](const DFailure& outcome) { return !outcome != ok; }),
                       outcomes.end());
        require(!outcomes.empty(), ok ? "success without a cause" : "failure without a cause", order);
        ++ends[outcomes.front() ? outcomes.front().kindName() : "success"_s];
        const auto requests = order.requests;
        for (const RequestPointer& request : requests) {
            if (request == failed) {
                request->atDevice = request->atDevice && !certain;
            }
            retire(request, request == failed ? Cancel::Possible : Cancel::Due);
        }
    }

    /// Adds the failures that may end the order now. Returns its request whose failure is next to be
    /// delivered, or null.
    RequestPointer addCausesOfFailure(Order& order) const
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
            if (!answers.empty() && answers.front().failure && answers.front().request == request) {
                order.outcomes.push_back(answers.front().failure);
                failed = request;
            }
        }
        return failed;
    }

    /// The request is over; cancel says what its device is to be told. It need not be told when an answer is
    /// on its way, which may come while the order ends.
    void retire(const RequestPointer& request, Cancel cancel)
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

    void completeOrWait(Order& order) const
    {
        if (!order.requests.empty()) {
            return;
        }
        if (order.reported) {
            order.outcomes.push_back({});
        } else if (!order.pulseUs) {
            order.outcomes.push_back(
                {Kind::NothingSent, DWording::told("the command waits for nothing more"_s)});
        }
    }

    /// Answers to requests that are over are dropped.
    static void dropOver(Device& device)
    {
        while (!device.answers.empty() && device.answers.front().request->over) {
            device.answers.pop_front();
        }
    }

    static DFailure timedOut(const Request& request)
    {
        return {Kind::TimedOut, DWording::told("no reply to \"%1\" within %2 ms"_s.arg(
                                    request.instruction, QString::number(request.timeoutMs)))};
    }

    const Journal& m_journal;
    const DScheduler& m_clock;
    std::map<quint64, std::shared_ptr<Order>> m_orders;
    std::map<quint64, RequestPointer> m_requests; ///< that are not over, or still known to their device
    std::vector<RequestPointer> m_sending;        ///< null: in vain
    std::vector<quint64> m_recent;
    quint64 m_lastRequest = 0;
    quint64 m_lastStart = 0;
};
