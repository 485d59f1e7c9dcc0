#include "scripted_device.h"

ScriptedDevice::ScriptedDevice(Observer* observer)
    : DDevice(QStringLiteral("Scripted device"))
    , m_observer(observer)
{}

ScriptedDevice::~ScriptedDevice() = default;

QVector<DLine> ScriptedDevice::lines() const
{
    return {};
}

int ScriptedDevice::level(int line) const
{
    Q_UNUSED(line)
    return 0;
}

void ScriptedDevice::handleRequest(quint64 id, const QString& instruction, const QVariantMap& arguments)
{
    Q_UNUSED(instruction)
    Q_UNUSED(arguments)
    m_observer->requestArrives(this, id);
}

void ScriptedDevice::handleCancel(quint64 id)
{
    m_observer->cancelArrives(this, id);
}
