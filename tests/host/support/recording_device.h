#pragma once

#include <plugin_management/d_device.h>

#include <functional>

/// A device that remembers what it is asked, and answers when the test says so.
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

    RecordingDevice();
    ~RecordingDevice() override;

    QVector<DLine> lines() const override;
    int level(int line) const override;

    using DDevice::fail;
    using DDevice::reply;
    using DDevice::setConnected;
    using DDevice::setDisconnected;

    /// Identifier of the latest request; 0 when there was none.
    quint64 lastId() const;
    QStringList instructions() const;

    QVector<Request> requests;
    QVector<quint64> cancelled;
    /// Carried out inside the sending of each request.
    std::function<void(const Request&)> onRequest;
    /// Carried out inside the handling of each cancellation.
    std::function<void(quint64 id)> onCancel;

protected:
    void handleRequest(quint64 id, const QString& instruction, const QVariantMap& arguments) override;
    void handleCancel(quint64 id) override;
};
