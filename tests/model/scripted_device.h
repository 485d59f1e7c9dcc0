#pragma once

#include "observer.h"

#include <plugin_management/d_device.h>

/// A device that only answers what it is told to.
class ScriptedDevice : public DDevice
{
    Q_OBJECT
    Q_DISABLE_COPY(ScriptedDevice)

public:
    explicit ScriptedDevice(Observer* observer);
    ~ScriptedDevice() override;

    QVector<DLine> lines() const override;
    int level(int line) const override;

    using DDevice::fail;
    using DDevice::reply;
    using DDevice::setConnected;
    using DDevice::setDisconnected;

protected:
    void handleRequest(quint64 id, const QString& instruction, const QVariantMap& arguments) override;
    void handleCancel(quint64 id) override;

private:
    Observer* m_observer;
};
