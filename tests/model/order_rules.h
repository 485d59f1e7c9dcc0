#pragma once

#include "journal.h"
#include "model_state.h"

#include <QMap>

#include <map>

/// The rules that orders and devices keep. It hears what the run does and what the host does in return, and
/// ends the process where the two do not fit.
class OrderRules
{
public:
    /// The times are those of clock.
    OrderRules(const Journal& journal, const DScheduler& clock)
        : m_journal(journal)
        , m_clock(clock)
    {}

    // What the run does, told before it happens.
    std::shared_ptr<model::Order> makeOrder(quint64 id, const InvocationPlan& plan,
                                            const std::shared_ptr<model::Tool>& tool);
    void start(model::Order& order);
    void stop(model::Order& order);
    void destroy(model::Order& order);
    void closeTool(const std::shared_ptr<model::Tool>& tool);
    void answer(model::Device& device, quint64 request, const model::Answer& answer);
    void disconnect(model::Device& device, const QString& problem);
    void connect(model::Device& device);
    void close(model::Device& device);
    void destroyDevice(model::Device& device);

    // What the host does.
    void commandMade(model::Order& order);
    void executeBegins(model::Order& order);
    void executeEnds(model::Order& order, bool accepted);
    void sendBegins(model::Order& order, const QString& instruction, int timeoutMs);
    void requestArrives(const model::Device& device, quint64 id);
    void sendEnds(quint64 id);
    void replyBegins(model::Order& order, quint64 request, const QVariantMap& reply);
    void delegateRuns(model::Order& order, const QVariantMap& reply);
    void replyEnds(model::Order& order, quint64 request, bool accepted);
    void cancelBegins(const model::Device& device, quint64 request);
    void cancelEnds(model::Device& device, quint64 request);
    void finishBegins(model::Order& order, bool ok);
    void eventTold(const model::Order& order, qint64 timeUs) const;
    void finishedTold(model::Order& order, const DFailure& failure);
    void stateTold(model::Device& device) const;
    void orderGone(model::Order& order) const;
    void forgetGone();

    // What must hold when nothing is left to do.
    void checkOrder(const model::Order& order) const;
    void checkDevice(model::Device& device) const;
    int pendingRequests(const model::Device& device) const;
    int workingCommands() const;
    const std::map<quint64, std::shared_ptr<model::Order>>& orders() const { return m_orders; }
    /// Requests that device handles, and whose orders wait for it.
    std::vector<quint64> waitingRequests(const model::Device& device) const;
    /// The latest requests, most of which are over.
    const std::vector<quint64>& recentRequests() const { return m_recent; }
    /// Times at which something falls due.
    std::vector<qint64> dueTimes() const;

    QMap<QString, quint64> ends; ///< how many orders ended in each way: "success", or the kind of failure
    quint64 replies = 0;
    int errorReports = 0;  ///< that the commands must have made
    int timerWarnings = 0; ///< of Qt, about pulses of negative length

private:
    using RequestPointer = std::shared_ptr<model::Request>;

    void require(bool holds, const char* rule, const model::Order& order) const;
    bool hasDue(const model::Request& request) const;
    model::Order* orderToStop(const model::Order& order) const;
    static bool accepts(const model::Order& order, const QVariantMap& reply);
    void decide(model::Order& order, bool ok);
    RequestPointer addCausesOfFailure(model::Order& order) const;
    void retire(const RequestPointer& request, model::Request::Cancel cancel);
    void completeOrWait(model::Order& order) const;
    static void dropOver(model::Device& device);
    static DFailure timedOut(const model::Request& request);

    const Journal& m_journal;
    const DScheduler& m_clock;
    std::map<quint64, std::shared_ptr<model::Order>> m_orders;
    std::map<quint64, RequestPointer> m_requests; ///< that are not over, or still known to their device
    std::vector<RequestPointer> m_sending;        ///< null: in vain
    std::vector<quint64> m_recent;
    quint64 m_lastRequest = 0;
    quint64 m_lastStart = 0;
};
