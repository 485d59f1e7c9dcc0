#pragma once

#include "invocation_plan.h"

#include <plugin_management/d_failure.h>

#include <deque>
#include <memory>
#include <optional>
#include <vector>

// What the model knows of the objects of a run. It is kept up by the rules, and never asked of the objects.

struct Order;
struct Request;

/// What a device was told to answer and has not delivered.
struct Answer
{
    std::shared_ptr<Request> request;
    DFailure failure = {}; ///< none: a reply
    QVariantMap reply = {};
    qint64 timeUs = 0;
};

struct Device
{
    bool connected = true;
    bool disconnecting = false; ///< it cancels what is pending
    bool closing = false;       ///< the same, while it still takes requests
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
    int timeoutMs = 0;
    qint64 deadlineUs = 0;
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
    quint64 startNumber = 0;        ///< of those that made a command: in the order of their starts
    std::optional<qint64> pulseUs;  ///< when the pulse ends
    QVariant value;                 ///< the result "value"
    std::vector<qint64> replyTimes; ///< of the replies that its command is being handed, one inside another
    /// How it has to end, with part of the text of a failure. Several where one cause was about to take
    /// effect when another did.
    std::vector<DFailure> outcomes;
    std::vector<std::shared_ptr<Request>> requests; ///< those that are not over

    bool isRunning() const { return started && !decided; }
    bool isListening() const
    {
        return std::any_of(requests.cbegin(), requests.cend(),
                           [](const auto& request) { return request->recurring; });
    }
};

struct Treatment
{
    int id = 0;
    InvocationPlan plan;
};
using Treatments = std::deque<Treatment>;

struct Backend
{
    QString toolName;
    std::shared_ptr<Tool> tool;
    bool initialized = false;
    /// The channels of the tools that it can be bound to; those of the first one.
    std::optional<int> channels;
    Treatments actions;   ///< treatments of commands that do something
    Treatments questions; ///< those of commands that only ask
    /// The order of a treatment, which is the first of its kind.
    std::shared_ptr<Order> running;
    bool runningAsks = false;
    bool replied = false; ///< the results of the treatment that runs were told
};
