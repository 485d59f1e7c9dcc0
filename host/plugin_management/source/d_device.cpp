#include <plugin_management/d_device.h>

#include <QBasicTimer>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QHash>
#include <QPointer>
#include <QTimerEvent>

#include <algorithm>
#include <deque>
#include <map>
#include <utility>

namespace {

struct Answer
{
    quint64 id;
    bool failed;
    QVariantMap reply;
    QString reason;
};

QEvent::Type deliveryEvent()
{
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

} // namespace

struct DDevice::Private
{
    using Deadlines = std::multimap<qint64, quint64>;

    struct Request
    {
        DDeviceClient* client;
        QString instruction;
        QString channel;
        int timeoutMs;
        bool handling;
        Deadlines::iterator deadline;
    };

    QHash<quint64, Request> requests;
    std::deque<Answer> answers;
    /// Number of answers that were taken from the queue so far.
    quint64 delivered = 0;
    Deadlines deadlines;
    QBasicTimer deadlineTimer;
    /// When the timer fires, while it is active.
    qint64 timerDue = 0;
    QElapsedTimer clock;
    bool deliveryPosted = false;
    bool connected = true;
    QString connectionProblem;

    QList<quint64> pending() const;
    void clearDeadline(Request& request);
    Request take(quint64 id);
    void armDeadlineTimer(DDevice* device);
    void queue(DDevice* device, Answer answer);
    void postDelivery(DDevice* device);
};

/// The requests that are not over, in the order of their identifiers, which is that of their sending.
QList<quint64> DDevice::Private::pending() const
{
    QList<quint64> ids = requests.keys();
    std::sort(ids.begin(), ids.end());
    return ids;
}

void DDevice::Private::clearDeadline(Request& request)
{
    if (request.deadline != deadlines.end()) {
        deadlines.erase(request.deadline);
        request.deadline = deadlines.end();
    }
}

DDevice::Private::Request DDevice::Private::take(quint64 id)
{
    Request request = requests.take(id);
    clearDeadline(request);
    return request;
}

/// The timer fires at the earliest deadline or before; when it finds nothing due it only arms the next.
void DDevice::Private::armDeadlineTimer(DDevice* device)
{
    if (deadlines.empty()) {
        return;
    }
    const qint64 due = deadlines.begin()->first;
    if (!deadlineTimer.isActive() || due < timerDue) {
        timerDue = due;
        const qint64 wait = due - clock.elapsed();
        deadlineTimer.start(static_cast<int>(std::max<qint64>(wait, 0)), Qt::PreciseTimer, device);
    }
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

DDevice::DDevice(const QString& name, QObject* parent)
    : DObject(name, parent)
    , d(std::make_unique<Private>())
{
    d->clock.start();
}

DDevice::~DDevice()
{
    d->connected = false;
    d->connectionProblem = QStringLiteral("the device is gone");
    d->answers.clear(); // a client that hears of the end may run an event loop
    for (Private::Request& request : d->requests) {
        request.handling = false; // who would have handled a cancellation is gone already
    }
    while (!d->requests.isEmpty()) {
        const auto pending = d->pending();
        for (const quint64 id : pending) {
            if (d->requests.contains(id)) {
                d->take(id).client->requestFailed(id, d->connectionProblem);
            }
        }
    }
}

bool DDevice::isRecurring(const QString& instruction)
{
    return instruction == QLatin1String("listenEvents") || instruction == QLatin1String("listenToAll");
}

bool DDevice::isConnected() const
{
    return d->connected;
}

QString DDevice::connectionProblem() const
{
    return d->connectionProblem;
}

void DDevice::send(quint64 id, const QString& instruction, const QVariantMap& arguments, int timeoutMs,
                   DDeviceClient* client)
{
    auto deadline = d->deadlines.end();
    if (timeoutMs > 0) {
        deadline = d->deadlines.emplace(d->clock.elapsed() + timeoutMs, id);
        d->armDeadlineTimer(this);
    }
    d->requests.insert(id, {client, instruction, arguments.value(QStringLiteral("channel")).toString(),
                            timeoutMs, d->connected, deadline});
    if (d->connected) {
        handleRequest(id, instruction, arguments);
    } else {
        fail(id, d->connectionProblem);
    }
}

void DDevice::cancel(quint64 id)
{
    if (d->requests.contains(id) && d->take(id).handling) {
        handleCancel(id);
    }
}

int DDevice::pendingRequests() const
{
    return d->requests.size();
}

void DDevice::reply(quint64 id, const QVariantMap& reply)
{
    d->queue(this, {id, false, reply, QString()});
}

void DDevice::fail(quint64 id, const QString& reason)
{
    d->queue(this, {id, true, QVariantMap(), reason});
}

void DDevice::setConnected()
{
    if (!d->connected) {
        d->connected = true;
        d->connectionProblem.clear();
        Q_EMIT connectedChanged(true);
    }
}

void DDevice::setDisconnected(const QString& reason)
{
    d->connectionProblem = reason;
    if (!d->connected) {
        return;
    }
    d->connected = false;
    const auto pending = d->pending();
    for (const quint64 id : pending) {
        const auto request = d->requests.find(id);
        if (request == d->requests.end()) {
            continue; // it was ended where another was cancelled
        }
        if (std::exchange(request->handling, false)) {
            handleCancel(id);
        }
        fail(id, reason);
    }
    Q_EMIT connectedChanged(false);
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
        DDeviceClient* client = request->client;
        if (answer.failed || !isRecurring(request->instruction)) {
            d->take(answer.id);
        } else {
            d->clearDeadline(*request);
        }
        if (answer.failed) {
            client->requestFailed(answer.id, answer.reason);
        } else {
            client->requestReplied(answer.id, answer.reply);
        }
    }
    return true;
}

void DDevice::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != d->deadlineTimer.timerId()) {
        DObject::timerEvent(event);
        return;
    }
    d->deadlineTimer.stop();
    const QPointer<DDevice> self(this);
    while (!d->deadlines.empty() && d->deadlines.begin()->first <= d->clock.elapsed()) {
        const quint64 id = d->deadlines.begin()->second;
        const auto late = d->requests.find(id);
        d->clearDeadline(*late);
        if (std::exchange(late->handling, false)) {
            handleCancel(id);
        }
        if (!d->requests.contains(id)) {
            continue; // its client has ended it meanwhile
        }
        const Private::Request request = d->take(id);
        d->armDeadlineTimer(this); // the client may run an event loop, where other times pass
        const QString channel =
            request.channel.isEmpty() ? QString() : QStringLiteral(" of channel \"%1\"").arg(request.channel);
        // In one call: a name may hold a percent sign.
        request.client->requestFailed(
            id, QStringLiteral("no reply to \"%1\"%2 within %3 ms")
                    .arg(request.instruction, channel, QString::number(request.timeoutMs)));
        if (self.isNull()) {
            return;
        }
    }
    d->armDeadlineTimer(this);
}
