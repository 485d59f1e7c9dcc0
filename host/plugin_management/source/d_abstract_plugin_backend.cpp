#include <plugin_management/d_abstract_plugin_backend.h>

#include "d_refusal_gate.h"
#include "d_treatment_queue.h"

#include <plugin_management/d_device.h>
#include <plugin_management/d_tool_registry.h>

#include <QPointer>

#include <algorithm>
#include <optional>

struct DAbstractPluginBackend::Private
{
    QString name;
    QString objectId;
    /// That of the first bound tool: what the page shows was made from it.
    std::optional<QVariantMap> configuration;
    bool connected = false;
    int queueLimit = c_leastQueueLimit;
    DTreatmentQueue* treatments = nullptr;
    DRefusalGate* gate = nullptr;

    static constexpr int c_leastQueueLimit = 256;
};

DAbstractPluginBackend::DAbstractPluginBackend(const QString& pluginLib, QObject* parent)
    : DObject(pluginLib, parent)
    , d(std::make_unique<Private>())
{
    d->treatments = new DTreatmentQueue(this);
    d->gate = new DRefusalGate(this, d->treatments);
    // The calls are virtual: a treatment always reaches the subclass.
    connect(d->treatments, &DTreatmentQueue::replied, this,
            [this](int id, const QString& name, const QVariantMap& reply) {
                applyTreatmentReply(id, name, reply);
            });
    connect(d->treatments, &DTreatmentQueue::ended, this, &DAbstractPluginBackend::treatmentEnded);
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
    if (d->treatments->append(id, name, parameters, d->queueLimit)) {
        return true;
    }
    if (!d->gate->refuse()) { // no more can be held back
        QMetaObject::invokeMethod(
            this,
            [this, self = QPointer<DAbstractPluginBackend>(this), id, name, parameters] {
                Q_EMIT treatmentEnded(name, parameters, {},
                                      {DFailure::Kind::NothingSent, wording("too many treatments wait")});
                if (!self.isNull()) { // who heard of it may have destroyed the backend
                    treatmentReleased(id, name, false);
                }
            },
            Qt::QueuedConnection);
        return true;
    }
    return false;
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
            bind();
        }
    });
    connect(&registry, &DToolRegistry::toolRemoved, this, &DAbstractPluginBackend::release);
    if (!bind()) {
        Q_EMIT abstractBackendInitialized();
    }
}

/// Answers whether there is a tool.
bool DAbstractPluginBackend::bind()
{
    DTool* tool = DToolRegistry::instance().find(d->name, d->objectId, d->configuration);
    if (tool == nullptr) {
        return false;
    }
    boundToolObject = tool;
    d->queueLimit = std::max(Private::c_leastQueueLimit, tool->channels().size());
    d->treatments->setTool(tool);
    if (const DDevice* device = tool->device()) {
        // A device may be bound again with another tool of its own.
        connect(device, &DDevice::stateChanged, this, &DAbstractPluginBackend::refreshConnected,
                Qt::UniqueConnection);
        connect(device, &QObject::destroyed, this, &DAbstractPluginBackend::refreshConnected,
                Qt::UniqueConnection);
    }
    refreshConnected();
    if (!d->configuration) {
        d->configuration = tool->toolConfiguration;
        Q_EMIT abstractBackendInitialized();
    }
    return true;
}

void DAbstractPluginBackend::release(DTool* tool)
{
    if (tool != boundToolObject) {
        return;
    }
    boundToolObject = nullptr;
    d->treatments->setTool(nullptr);
    bind();
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
