#include <plugin_management/d_device.h>

#include <plugin_management/d_scheduler.h>

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>

#include <deque>
#include <functional>
#include <map>
#include <queue>
#include <utility>
#include <vector>

namespace {

constexpr qint64 c_usPerMs = 1000;

struct Answer
{
    quint64 id;
    QVariantMap reply;
    qint64 timeUs;
    DFailure failure;
    quint64 lost = 0; ///< replies left out, told in place of one
};

QEvent::Type deliveryEvent()
{
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

} // namespace

struct DDevice::Private
{
    struct Request
    {
        DDeviceClient* client;
        QString instruction;
        QVariantMap arguments;
        int timeoutMs;
        bool recurring;
        bool handling;     ///< the device works on it, and must hear when it is over
        qint64 deadlineUs; ///< 0 when it has none
    };
    using Deadline = std::pair<qint64, quint64>;
    using Deadlines = std::priority_queue<Deadline, std::vector<Deadline>, std::greater<>>;
    using Requests = std::map<quint64, Request>;

    explicit Private(DScheduler* clock)
        : scheduler(clock)
    {}

    DScheduler* const scheduler;
    Requests requests; ///< by their identifiers: in the order of their sending
    std::deque<Answer> answers;
    /// Number of answers that were taken from the queue so far.
    quint64 delivered = 0;
    /// Time limits with their requests, the earliest on top. Those of requests that are over go when their
    /// time comes, or when they are most of all.
    Deadlines deadlines;
    /// When the time limits are looked at; none when no limit is set.
    DScheduler::Appointment expiry;
    bool deliveryPosted = false;
    State state = State::Closed;
    DWording problem;

    DFailure unreachable() const { return {DFailure::Kind::DeviceUnreachable, problem}; }
    void setDeadline(DDevice* device, quint64 id, qint64 timeUs);
    void arm(DDevice* device);
    void queue(DDevice* device, Answer answer);
    void postDelivery(DDevice* device);
    void failAll(DDevice* device, const DFailure& failure);
};

void DDevice::Private::setDeadline(DDevice* device, quint64 id, qint64 timeUs)
{
    constexpr std::size_t fewest = 64;
    if (deadlines.size() > fewest + 2 * requests.size()) {
        std::vector<Deadline> pending;
        for (const auto& [requestId, request] : requests) {
            if (request.deadlineUs != 0) {
                pending.emplace_back(request.deadlineUs, requestId);
            }
        }
        deadlines = Deadlines(std::greater<>(), std::move(pending));
    }
    deadlines.emplace(timeUs, id);
    arm(device);
}

/// The appointment is at the earliest limit or before; when it finds nothing due it only makes the next.
void DDevice::Private::arm(DDevice* device)
{
    if (deadlines.empty()) {
        return;
    }
    const qint64 due = deadlines.top().first;
    if (expiry != DScheduler::Appointment() && expiry.first <= due) {
        return;
    }
    scheduler->cancel(expiry);
    expiry = scheduler->at(due, [device] { device->expire(); });
}

void DDevice::Private::queue(DDevice* device, Answer answer)
{
    answers.push_back(std::move(answer));
    postDelivery(device);
}

void DDevice::Private::postDelivery(DDevice* device)
{
    if (!deliveryPosted) {
        deliveryPosted = true;
        QCoreApplication::postEvent(device, new QEvent(deliveryEvent()));
    }
}

/// Each request is cancelled at most once; one that is ended where another is cancelled is passed over.
void DDevice::Private::failAll(DDevice* device, const DFailure& failure)
{
    for (auto next = requests.begin(); next != requests.end();) {
        const quint64 id = next->first;
        if (std::exchange(next->second.handling, false)) {
            device->handleCancel(id);
        }
        if (requests.count(id) > 0) {
            device->fail(id, failure);
        }
        next = requests.upper_bound(id);
    }
}

DDevice::DDevice(const QString& name, DScheduler* scheduler, QObject* parent)
    : DObject(name, parent)
    , d(std::make_unique<Private>(scheduler))
{}

DDevice::~DDevice()
{
    d->state = State::Closed;
    d->answers.clear(); // a client that hears of the end may run an event loop
    for (auto& [id, request] : d->requests) {
        Q_UNUSED(id)
        request.handling = false; // nobody is left to hear of the end
    }
    const DFailure gone = {DFailure::Kind::DeviceUnreachable, wording("the device is gone")};
    while (!d->requests.empty()) {
        const auto request = d->requests.begin();
        const quint64 id = request->first;
        DDeviceClient* client = request->second.client;
        d->requests.erase(request);
        client->requestFailed(id, gone);
    }
    d->scheduler->cancel(d->expiry);
}

DScheduler* DDevice::scheduler() const
{
    return d->scheduler;
}

bool DDevice::isRecurring(const QString& instruction) const
{
    Q_UNUSED(instruction)
    return false;
}

DWording DDevice::describe(const QString& instruction, const QVariantMap& arguments) const
{
    Q_UNUSED(arguments)
    return wording(R"("%1")").arg(instruction);
}

DDevice::State DDevice::state() const
{
    return d->state;
}

DWording DDevice::connectionProblem() const
{
    return d->problem;
}

void DDevice::open()
{
    if (d->state == State::Closed) {
        setState(State::Connecting);
        handleOpen();
    }
}

void DDevice::close()
{
    if (d->state != State::Closed) {
        d->failAll(this, {DFailure::Kind::DeviceUnreachable, wording("the device was closed")});
        const QPointer<DDevice> self(this); // what is told of the end may destroy the device
        handleClose();
        if (!self.isNull()) {
            setState(State::Closed);
        }
    }
}

quint64 DDevice::nextRequestId()
{
    static quint64 last = 0;
    return ++last;
}

void DDevice::send(quint64 id, const QString& instruction, const QVariantMap& arguments, int timeoutMs,
                   DDeviceClient* client)
{
    const qint64 deadlineUs = timeoutMs > 0 ? d->scheduler->now() + timeoutMs * c_usPerMs : 0;
    if (deadlineUs != 0) {
        d->setDeadline(this, id, deadlineUs);
    }
    const bool reachable = d->state == State::Connected || d->state == State::Connecting;
    d->requests.emplace_hint(d->requests.end(), id,
                             Private::Request{client, instruction, arguments, timeoutMs,
                                              isRecurring(instruction), reachable, deadlineUs});
    if (reachable) {
        handleRequest(id, instruction, arguments);
    } else if (d->state == State::Unreachable) {
        fail(id, d->unreachable());
    } else {
        fail(id, {DFailure::Kind::DeviceUnreachable, wording("the device is closed")});
    }
}

void DDevice::cancel(quint64 id)
{
    const auto request = d->requests.find(id);
    if (request != d->requests.end()) {
        const bool handling = request->second.handling;
        d->requests.erase(request);
        if (handling) {
            handleCancel(id);
        }
    }
}

int DDevice::pendingRequests() const
{
    return static_cast<int>(d->requests.size());
}

void DDevice::reply(quint64 id, const QVariantMap& reply, qint64 timeUs)
{
    d->queue(this, {id, reply, timeUs, DFailure()});
}

void DDevice::tellLost(quint64 id, quint64 count)
{
    d->queue(this, {id, QVariantMap(), 0, DFailure(), count});
}

void DDevice::fail(quint64 id, const DFailure& failure)
{
    d->queue(this, {id, QVariantMap(), 0, failure});
}

void DDevice::setState(State state, const DWording& problem)
{
    if (state == d->state && problem == d->problem) {
        return;
    }
    const bool lost = state == State::Unreachable && d->state != State::Unreachable;
    d->state = state;
    d->problem = problem;
    if (lost) {
        d->failAll(this, d->unreachable());
    }
    Q_EMIT stateChanged();
}

bool DDevice::event(QEvent* event)
{
    if (event->type() != deliveryEvent()) {
        return DObject::event(event);
    }
    d->deliveryPosted = false;
    const QPointer<DDevice> self(this);
    // What is queued meanwhile waits for the next event. The answers stay in the queue until their turn: a
    // client may run an event loop, where the rest of them is delivered in its order.
    const quint64 end = d->delivered + d->answers.size();
    while (!self.isNull() && d->delivered < end) {
        const Answer answer = std::move(d->answers.front());
        d->answers.pop_front();
        ++d->delivered;
        if (!d->answers.empty()) {
            d->postDelivery(this);
        }
        const auto request = d->requests.find(answer.id);
        if (request == d->requests.end()) {
            continue;
        }
        DDeviceClient* client = request->second.client;
        if (answer.lost > 0) {
            client->repliesLost(answer.id, answer.lost);
            continue;
        }
        if (answer.failure || !request->second.recurring) {
            d->requests.erase(request);
        } else {
            request->second.deadlineUs = 0;
        }
        if (answer.failure) {
            client->requestFailed(answer.id, answer.failure);
        } else {
            client->requestReplied(answer.id, answer.reply, answer.timeUs);
        }
    }
    return true;
}

/// Ends the requests whose time has passed.
void DDevice::expire()
{
    d->expiry = {};
    const QPointer<DDevice> self(this);
    while (!d->deadlines.empty() && d->deadlines.top().first <= d->scheduler->now()) {
        const auto [deadlineUs, id] = d->deadlines.top();
        d->deadlines.pop();
        auto late = d->requests.find(id);
        if (late == d->requests.end() || late->second.deadlineUs != deadlineUs) {
            continue; // it is over, or has been answered
        }
        late->second.deadlineUs = 0;
        if (std::exchange(late->second.handling, false)) {
            handleCancel(id);
            late = d->requests.find(id);
        }
        if (late == d->requests.end()) {
            continue; // its client has ended it meanwhile
        }
        DDeviceClient* client = late->second.client;
        const DWording described = describe(late->second.instruction, late->second.arguments);
        const int timeoutMs = late->second.timeoutMs;
        d->requests.erase(late);
        d->arm(this); // the client may run an event loop, where other times pass
        client->requestFailed(
            id, {DFailure::Kind::TimedOut, wording("no reply to %1 within %2 ms").arg(described, timeoutMs)});
        if (self.isNull()) {
            return;
        }
    }
    d->arm(this);
}
