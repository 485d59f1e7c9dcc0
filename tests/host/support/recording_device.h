#pragma once

#include <plugin_management/d_device.h>

#include <functional>

/// A device that remembers what it is asked, and answers when the test says so. It is there when it is
/// opened.
class RecordingDevice : public DDevice
{
    Q_OBJECT
    Q_DISABLE_COPY(RecordingDevice)

public:
    struct Request
    {
        quint64 id;
        QString instruction;
        QVariantMap arguments;
    };

    explicit RecordingDevice(DScheduler* scheduler);
    ~RecordingDevice() override;

    /// Instructions to listen recur.
    bool isRecurring(const QString& instruction) const override;

    using DDevice::reply;
    using DDevice::setState;
    using DDevice::tellLost;

    /// Answers with what is true since now.
    void reply(quint64 id, const QVariantMap& reply);
    /// Refuses a request.
    void refuse(quint64 id, const QString& reason);
    void lose(const QString& problem);
    void restore();

    /// Identifier of the latest request; 0 when there was none.
    quint64 lastId() const;
    QStringList instructions() const;

    QVector<Request> requests;
    QVector<quint64> cancelled;
    /// "open" and "close", in their order.
    QStringList reached;
    /// Carried out inside the sending of each request.
    std::function<void(const Request&)> onRequest;
    /// Carried out inside the handling of each cancellation.
    std::function<void(quint64 id)> onCancel;

protected:
    void handleOpen() override;
    void handleClose() override;
    void handleRequest(quint64 id, const QString& instruction, const QVariantMap& arguments) override;
    void handleCancel(quint64 id) override;
};
