#pragma once

#include <plugin_management/plugin_management_global.h>

#include <utilities/d_object.h>

#include <QVariant>
#include <QVector>

#include <memory>

/// Who sent a request to a device and hears of its replies. Both calls come from the event loop only, never
/// from inside DDevice::send.
class DDeviceClient
{
public:
    /// A reply to the request id. A one-shot request is over with it.
    virtual void requestReplied(quint64 id, const QVariantMap& reply) = 0;
    /// The request id failed and is over; reason is a text for people.
    virtual void requestFailed(quint64 id, const QString& reason) = 0;

protected:
    ~DDeviceClient() = default;
};

/// A line of a device, as displays and traces need it.
struct DLine
{
    enum class Kind
    {
        Digital,
        Analog
    };
    enum class Direction
    {
        In,
        Out
    };

    QString name;
    Kind kind = Kind::Digital;
    /// Seen from the device: Out is driven by requests, In is driven from outside.
    Direction direction = Direction::Out;
};

/// What requests to the target "device" reach. A device derives from it, handles the requests and answers
/// them with reply() and fail(); the base keeps the pending requests, their time limits and the order of
/// delivery.
class PLUGIN_MANAGEMENT_EXPORT DDevice : public DObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DDevice)

public:
    /// Makes a connected device called name, child of parent (or of none).
    explicit DDevice(const QString& name, QObject* parent = nullptr);
    /// Pending requests fail with "the device is gone".
    ~DDevice() override;

    /// True when instruction is answered again and again until it is cancelled.
    static bool isRecurring(const QString& instruction);

    /// True while the device can be reached.
    bool isConnected() const;
    /// Why the device cannot be reached; empty while it is connected.
    QString connectionProblem() const;

    /// The lines of the device; levelChanged and level count them from 0 in this order.
    virtual QVector<DLine> lines() const = 0;
    /// Present level of a line: 0 or 1, 0..65535 of an analogue one; 0 for a line that does not exist.
    virtual int level(int line) const = 0;

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
    /// The device was lost, or is back.
    void connectedChanged(bool connected);
    /// A line has a new level since timeUs (microseconds on the device's own steady clock).
    void levelChanged(int line, int level, qint64 timeUs);

protected:
    /// Carries out the request id. Its answers go through reply() and fail(), at once or later.
    virtual void handleRequest(quint64 id, const QString& instruction, const QVariantMap& arguments) = 0;
    /// The request id is over before the device ended it; nobody hears further replies.
    virtual void handleCancel(quint64 id) = 0;

    /// Answers the request id.
    void reply(quint64 id, const QVariantMap& reply);
    /// Ends the request id with a reason.
    void fail(quint64 id, const QString& reason);
    /// The device can be reached again.
    void setConnected();
    /// The device is lost for this reason: all pending requests are cancelled, and fail with it.
    void setDisconnected(const QString& reason);

    bool event(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
