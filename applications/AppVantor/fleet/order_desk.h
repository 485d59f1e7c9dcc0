#pragma once

#include "answer.h"
#include "device_request.h"
#include "rig_forms.h"
#include "rig_lease.h"
#include "rig_order.h"
#include "taken_orders.h"

#include <devices/rig_topics.h>

#include <QObject>

#include <functional>
#include <map>
#include <memory>

class Bench;
class DOrder;

/// Takes the orders that come from a broker, carries them out on the bench, and answers each with its JSON
/// lines.
class OrderDesk : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(OrderDesk)

public:
    /// How many orders run at a time; further ones are refused.
    static constexpr std::size_t c_mostRunning = 256;
    /// How many bytes those may hold, since their ends, which repeat them, are to find room on the link.
    static constexpr int c_mostHeld = 1 << 20;

    /// All must outlive this. takesOrders is false for a rig that is only looked at.
    OrderDesk(const Bench& bench, const RigTopics& topics, const RigForms& forms, BrokerLink* link,
              bool takesOrders);
    ~OrderDesk() override;

    /// A message to the topic "order".
    void takeOrder(const BrokerMessage& message);
    /// A message to the topic of a line that is to be set.
    void takeLevel(const BrokerMessage& message);
    /// Ends whatever runs, and each answer with it.
    void stopAll();
    RigLease& lease() { return m_lease; }

private:
    struct Running
    {
        std::unique_ptr<DOrder> order;
        Answer answer;
        int size = 0;        ///< of what asked for it, in bytes
        quint64 leftOut = 0; ///< events since the last one that was sent
    };

    void carryOut(const RigOrder& order, const Answer& answer);
    void runCommand(const RigOrder& order, const Answer& answer);
    void runInstruction(const RigOrder& order, const Answer& answer);
    void request(const QString& instruction, const QVariantMap& arguments, DeviceRequest::Done done);
    void answerLease(const RigOrder& order, const Answer& answer);
    void tell(const QString& text);
    void passOn(int number, const Json& line);
    void orderEnded(int number);
    bool isFull(const RigOrder& order) const;
    void stopUnheard(const QByteArray& topic);
    void stopThose(const std::function<bool(const Running&)>& which);

    const Bench& m_bench;
    const RigTopics m_topics;
    const RigForms m_forms;
    BrokerLink* const m_link;
    const bool m_takesOrders;
    RigLease m_lease;
    TakenOrders m_taken;
    int m_last = 0; ///< number of the latest order
    std::map<int, Running> m_running;
    QString m_told;             ///< to people, last
    std::size_t m_requests = 0; ///< of the device, that are under way
    int m_held = 0;             ///< bytes of all that runs
};
