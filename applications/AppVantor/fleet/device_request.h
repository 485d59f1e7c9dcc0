#pragma once

#include <plugin_management/d_device.h>

#include <QObject>

#include <functional>

/// One request to a device that is answered once.
class DeviceRequest : public QObject, private DDeviceClient
{
    Q_OBJECT
    Q_DISABLE_COPY(DeviceRequest)

public:
    using Done = std::function<void(const QVariantMap& reply, const DFailure& failure)>;

    /// device must outlive this; done is called once, from the event loop, and this deletes itself then.
    DeviceRequest(DDevice* device, Done done);
    /// Nobody hears of the request any more.
    ~DeviceRequest() override;

    void send(const QString& instruction, const QVariantMap& arguments, int timeoutMs);
    /// Ends it as stopped.
    void stop(const DWording& reason);

private:
    void requestReplied(quint64 id, const QVariantMap& reply, qint64 timeUs) override;
    void requestFailed(quint64 id, const DFailure& failure) override;
    void end(const QVariantMap& reply, const DFailure& failure);

    DDevice* const m_device;
    const Done m_done;
    quint64 m_id = 0; ///< 0 when it is over
};
