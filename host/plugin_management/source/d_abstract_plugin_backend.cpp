#include <plugin_management/d_abstract_plugin_backend.h>

#include "d_treatment_queue.h"

#include <plugin_management/d_device.h>
#include <plugin_management/d_tool_registry.h>

#include <QPointer>

#include <algorithm>

struct DAbstractPluginBackend::Private
{
    QString name;
    QString objectId;
    bool initialized = false;
    bool connected = false;
    int queueLimit = c_leastQueueLimit;
    DTreatmentQueue* treatments = nullptr;

    static constexpr int c_leastQueueLimit = 256;
};

DAbstractPluginBackend::DAbstractPluginBackend(const QString& pluginLib, QObject* parent)
    : DObject(pluginLib, parent)
    , d(std::make_unique<Private>())
{
    d->treatments = new DTreatmentQueue(this);
    // The calls are virtual: a treatment always reaches the subclass.
    connect(d->treatments, &DTreatmentQueue::replied, this,
            [this](int id, const QString& name, const QVariantMap& reply) {
                applyTreatmentReply(id, name, reply);
            });
    connect(d->treatments, &DTreatmentQueue::released, this,
            [this](int id, const QString& name, bool success) { treatmentReleased(id, name, success); });
    QMetaObject::invokeMethod(this, &DAbstractPluginBackend::initialize, Qt::QueuedConnection);
}

DAbstractPluginBackend::~DAbstractPluginBackend() = default;

bool DAbstractPluginBackend::applyTreatmentReply(int id, const QString& name, const QVariantMap& reply)
{
    Q_UNUSED(id)
    Q_UNUSED(name)
    Q_UNUSED(reply)
    return false;
}

void DAbstractPluginBackend::treatmentReleased(int id, const QString& name, bool success)
{
    Q_UNUSED(id)
    Q_UNUSED(name)
    Q_UNUSED(success)
}

bool DAbstractPluginBackend::queueTreatment(int id, const QString& name, const QVariantMap& parameters)
{
    if (d->treatments->size() >= d->queueLimit) {
        return false;
    }
    d->treatments->append(id, name, parameters);
    return true;
}

bool DAbstractPluginBackend::hasPendingTreatments() const
{
    return d->treatments->size() > 0;
}

QString DAbstractPluginBackend::name() const
{
    return d->name;
}

void DAbstractPluginBackend::setName(const QString& name)
{
    if (name != d->name) {
        d->name = name;
        Q_EMIT nameChanged();
    }
}

QString DAbstractPluginBackend::objectId() const
{
    return d->objectId;
}

void DAbstractPluginBackend::setObjectId(const QString& objectId)
{
    if (objectId != d->objectId) {
        d->objectId = objectId;
        Q_EMIT objectIdChanged();
    }
}

bool DAbstractPluginBackend::isConnected() const
{
    return d->connected;
}

void DAbstractPluginBackend::initialize()
{
    DToolRegistry& registry = DToolRegistry::instance();
    connect(&registry, &DToolRegistry::toolAdded, this, [this] {
        if (boundToolObject == nullptr) {
            bind(DToolRegistry::instance().find(d->name, d->objectId));
        }
    });
    connect(&registry, &DToolRegistry::toolRemoved, this, &DAbstractPluginBackend::release);
    DTool* tool = registry.find(d->name, d->objectId);
    if (tool != nullptr) {
        bind(tool);
    } else {
        Q_EMIT abstractBackendInitialized();
    }
}

void DAbstractPluginBackend::bind(DTool* tool)
{
    if (tool == nullptr) {
        return;
    }
    boundToolObject = tool;
    const int channels = tool->toolConfiguration.value(QStringLiteral("channels")).toList().size();
    d->queueLimit = std::max(Private::c_leastQueueLimit, channels);
    d->treatments->setTool(tool);
    if (const DDevice* device = tool->device()) {
        connect(device, &DDevice::connectedChanged, this, &DAbstractPluginBackend::refreshConnected);
        connect(device, &QObject::destroyed, this, &DAbstractPluginBackend::refreshConnected);
    }
    refreshConnected();
    if (!d->initialized) {
        d->initialized = true;
        Q_EMIT abstractBackendInitialized();
    }
}

void DAbstractPluginBackend::release(DTool* tool)
{
    if (tool != boundToolObject) {
        return;
    }
    if (const DDevice* device = tool->device()) {
        disconnect(device, nullptr, this, nullptr);
    }
    boundToolObject = nullptr;
    d->treatments->setTool(nullptr);
    bind(DToolRegistry::instance().find(d->name, d->objectId));
    refreshConnected();
}

void DAbstractPluginBackend::refreshConnected()
{
    const DDevice* device = boundToolObject != nullptr ? boundToolObject->device() : nullptr;
    const bool connected = device != nullptr && device->isConnected();
    if (connected != d->connected) {
        d->connected = connected;
        Q_EMIT isConnectedChanged();
    }
}
