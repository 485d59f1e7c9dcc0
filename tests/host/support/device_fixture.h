#pragma once

#include "literals.h"
#include "manual_scheduler.h"
#include "recording_client.h"
#include "recording_device.h"
#include "workbench.h"

/// Base of the tests of devices: a client and an open device, made anew for each test.
class DeviceFixture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_scheduler = std::make_unique<ManualScheduler>();
        m_client = std::make_unique<RecordingClient>();
        m_device = std::make_unique<RecordingDevice>(m_scheduler.get());
        m_device->open();
    }

    void cleanup()
    {
        if (m_client != nullptr) {
            m_client->then = {};
        }
        m_device.reset();
    }

protected:
    void send(quint64 id, const QString& instruction, const QVariantMap& arguments = {}, int timeoutMs = 0)
    {
        m_device->send(id, instruction, arguments, timeoutMs, m_client.get());
    }

    void advanceMs(qint64 ms)
    {
        m_scheduler->advance(ms * 1000);
        deliver();
    }

    std::unique_ptr<ManualScheduler> m_scheduler;
    std::unique_ptr<RecordingClient> m_client;
    std::unique_ptr<RecordingDevice> m_device;
};
