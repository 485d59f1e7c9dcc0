#pragma once

#include <plugin_management/d_failure.h>
#include <plugin_management/plugin_management_global.h>

#include <utilities/d_object.h>

#include <QVariant>

#include <memory>

class DScheduler;

/// Who sent a request to a device and hears of its replies. Both calls come from the event loop only, never
/// from inside DDevice::send.
class DDeviceClient
{
public:
    /// A reply to the request id, true since timeUs on the steady clock. A one-shot request is over with it.
    virtual void requestReplied(quint64 id, const QVariantMap& reply, qint64 timeUs) = 0;
    /// So many replies to the recurring request id came too fast and were left out.
    virtual void repliesLost(quint64 id, quint64 count)
    {
        Q_UNUSED(id)
        Q_UNUSED(count)
    }
    /// The request id failed and is over.
    virtual void requestFailed(quint64 id, const DFailure& failure) = 0;

protected:
    ~DDeviceClient() = default;
};

/// What requests to the target "device" reach. A device derives from it, carries out the requests and answers
/// them with reply() and fail(); the base keeps the pending requests, their time limits and the order of
/// delivery.
class PLUGIN_MANAGEMENT_EXPORT DDevice : public DObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DDevice)

public:
    enum class State
    {
        Closed,      ///< not opened, or closed again
        Connecting,  ///< opened, and not reached yet
        Connected,   ///< can be reached
        Unreachable, ///< lost, or never found; it comes back by itself
        Count
    };
    Q_ENUM(State)

    /// Makes a closed device called name, child of parent (or of none). scheduler times the limits of
    /// requests and must outlive the device.
    DDevice(const QString& name, DScheduler* scheduler, QObject* parent = nullptr);
    /// Pending requests fail with "the device is gone".
    ~DDevice() override;

    DScheduler* scheduler() const;

    /// True when instruction is answered again and again until it is cancelled. The base knows none.
    virtual bool isRecurring(const QString& instruction) const;
    /// The request as messages name it: its instruction in quotes, and what it is about.
    virtual DWording describe(const QString& instruction, const QVariantMap& arguments) const;

    State state() const;
    /// True while the device can be reached.
    bool isConnected() const { return state() == State::Connected; }
    /// Why the device cannot be reached; empty while it is connected or closed.
    DWording connectionProblem() const;

    /// Begins to reach for the device; what comes of it is told by stateChanged. Does nothing while it is
    /// open.
    void open();
    /// Gives the device up: pending requests fail.
    void close();

    /// An identifier for the next request to any device: 1 and rising. Requests are sent from one thread.
    static quint64 nextRequestId();
    /// Sends the request id (1 or more, unique in the process and rising). client hears of replies until the
    /// request is over or cancelled. A request without a (first) reply within timeoutMs milliseconds fails; 0
    /// sets no limit.
    void send(quint64 id, const QString& instruction, const QVariantMap& arguments, int timeoutMs,
              DDeviceClient* client);
    /// Ends the request id; its client hears no more of it. Does nothing when it is over already.
    void cancel(quint64 id);
    /// Number of requests that are not over.
    int pendingRequests() const;

Q_SIGNALS:
    /// state and connectionProblem have changed.
    void stateChanged();
    /// Something failed that nobody waits for, a text for people.
    void problemTold(const DWording& text);

protected:
    /// Reaches for the device, and tells by setState what comes of it, at once or later.
    virtual void handleOpen() = 0;
    /// Lets go of the device.
    virtual void handleClose() = 0;
    /// Carries out the request id. Its answers go through reply() and fail(), at once or later.
    virtual void handleRequest(quint64 id, const QString& instruction, const QVariantMap& arguments) = 0;
    /// The request id is over before the device ended it; nobody hears further replies.
    virtual void handleCancel(quint64 id) = 0;

    /// Answers the request id with what is true since timeUs on the steady clock.
    void reply(quint64 id, const QVariantMap& reply, qint64 timeUs);
    /// Tells that count replies (1 or more) to the recurring request id were left out since its last one.
    void tellLost(quint64 id, quint64 count);
    /// Ends the request id with a failure.
    void fail(quint64 id, const DFailure& failure);
    /// The device's state has changed; problem says why it is unreachable. Pending requests of an unreachable
    /// device are cancelled, and fail with the problem.
    void setState(State state, const DWording& problem = {});

    bool event(QEvent* event) override;

private:
    void expire();

    struct Private;
    std::unique_ptr<Private> d;
};
