#pragma once

#include "invocation_plan.h"

#include <QString>

#include <deque>
#include <memory>
#include <vector>

/// What the model knows of the objects of a run. It is kept up by the rules, and never asked of the objects.
namespace model {

/// A way in which an order may end.
struct Outcome
{
    QString kind;
    bool success = false;
    QString reason; ///< part of the order's reason
};

struct Order;
struct Request;

/// What a device was told to answer and has not delivered.
struct Answer
{
    std::shared_ptr<Request> request;
    bool failed = false;
    QVariantMap reply;
    QString reason;
};

struct Device
{
    bool connected = true;
    bool disconnecting = false; ///< it cancels what is pending
    bool going = false;         ///< its destructor runs, or is over
    QString problem;
    std::deque<Answer> answers;
};

struct Request
{
    enum class Cancel
    {
        NotDue,
        Possible,
        Due
    };

    Order* order = nullptr;
    std::shared_ptr<Device> device; ///< null: the order's tool had none
    quint64 id = 0;                 ///< 0 until it is known
    QString instruction;
    QString channel;
    int timeoutMs = 0;
    qint64 deadlineMs = 0;
    bool recurring = false;
    bool heard = false; ///< a reply came, which ends the time limit
    bool timedOut = false;
    bool over = false;
    bool atDevice = false; ///< the device handles it
    Cancel cancel = Cancel::NotDue;
};

struct Tool
{
    QString name;
    std::shared_ptr<Device> device;
    int channels = 0;
    bool closed = false;
};

struct Order
{
    quint64 id = 0;
    InvocationPlan plan;
    std::shared_ptr<Tool> tool;
    bool started = false;
    bool made = false;     ///< its command was
    bool stopped = false;  ///< or destroyed: it ends at once, and for no other cause
    bool decided = false;  ///< its end has begun, or is over
    bool silent = false;   ///< it is being destroyed: its end is not told
    bool told = false;     ///< it has said that it has finished
    bool finished = false; ///< its command has
    bool reported = false; ///< all results
    bool gone = false;
    int sent = 0;
    int rejected = 0;
    qint64 pulseMs = -1; ///< when the pulse ends; -1 while no time runs
    QVariant value;      ///< the result "value"
    /// How it has to end. Several where one cause was about to take effect when another did.
    std::vector<Outcome> outcomes;
    std::vector<std::shared_ptr<Request>> requests; ///< those that are not over

    bool isRunning() const { return started && !decided; }
    bool isListening() const;
};

struct Treatment
{
    int id = 0;
    InvocationPlan plan;
};

struct Backend
{
    QString toolName;
    std::shared_ptr<Tool> tool;
    bool initialized = false;
    int limit = 256;
    std::deque<Treatment> queue;
    std::shared_ptr<Order> running; ///< the order of the first treatment
    bool replied = false;           ///< the first treatment's results were told
};

} // namespace model
