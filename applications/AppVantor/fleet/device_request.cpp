#include "device_request.h"

#include <utility>

DeviceRequest::DeviceRequest(DDevice* device, Done done)
    : m_device(device)
    , m_done(std::move(done))
{}

DeviceRequest::~DeviceRequest()
{
    if (m_id != 0) {
        m_device->cancel(m_id);
    }
}

void DeviceRequest::send(const QString& instruction, const QVariantMap& arguments, int timeoutMs)
{
    m_id = DDevice::nextRequestId();
    m_device->send(m_id, instruction, arguments, timeoutMs, this);
}

void DeviceRequest::stop(const DWording& reason)
{
    if (m_id != 0) {
        m_device->cancel(m_id);
        end(QVariantMap(), {DFailure::Kind::Stopped, reason});
    }
}

void DeviceRequest::requestReplied(quint64 id, const QVariantMap& reply, qint64 timeUs)
{
    Q_UNUSED(id)
    Q_UNUSED(timeUs)
    end(reply, DFailure());
}

void DeviceRequest::requestFailed(quint64 id, const DFailure& failure)
{
    Q_UNUSED(id)
    end(QVariantMap(), failure);
}

void DeviceRequest::end(const QVariantMap& reply, const DFailure& failure)
{
    m_id = 0;
    m_done(reply, failure);
    deleteLater();
}
