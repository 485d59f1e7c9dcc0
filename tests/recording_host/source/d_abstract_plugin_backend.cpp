#include <plugin_management/d_abstract_plugin_backend.h>

#include "records.h"

#include <QRandomGenerator>

namespace {

bool isRefusedAtRandom()
{
    static QRandomGenerator random(1); // the same each time
    return hostHas(HostHabit::RefusesAtRandom) && random.bounded(2) == 0;
}

} // namespace

BackendRecord& recordOf(const DAbstractPluginBackend& backend)
{
    return *backend.m_record;
}

void initialise(DAbstractPluginBackend& backend, DBoundTool* tool)
{
    const bool isEarly = hostHas(HostHabit::InitialisesTooEarly);
    const bool isFirst = !std::exchange(backend.m_record->isInitialised, true);
    if (isEarly && isFirst) {
        Q_EMIT backend.abstractBackendInitialized();
    }
    backend.boundToolObject = tool;
    if (!isEarly) {
        Q_EMIT backend.abstractBackendInitialized();
    }
}

DAbstractPluginBackend::DAbstractPluginBackend(const QString& pluginLib, QObject* parent)
    : DObject(pluginLib, parent)
    , m_record(std::make_unique<BackendRecord>())
{
    m_record->pluginLib = pluginLib;
    m_record->parent = parent;
}

DAbstractPluginBackend::~DAbstractPluginBackend()
{
    if (m_record->onDestroyed) {
        m_record->onDestroyed();
    }
}

bool DAbstractPluginBackend::applyTreatmentReply(int id, const QString& name, const QVariantMap& reply)
{
    m_record->baseReplies.append({id, name, reply});
    return m_record->baseReplyAnswer;
}

void DAbstractPluginBackend::treatmentReleased(int id, const QString& name, bool success)
{
    m_record->baseReleases.append({id, name, success});
}

bool DAbstractPluginBackend::queueTreatment(int id, const QString& name, const QVariantMap& parameters)
{
    const BackendRecord::Treatment treatment = {id, name, parameters};
    const bool isRefused = m_record->refusals > 0 || isRefusedAtRandom();
    m_record->refusals = qMax(0, m_record->refusals - 1);
    m_record->asked.append(treatment);
    if (!isRefused) {
        m_record->accepted.append(treatment);
    }
    if (m_record->onTreatment) {
        m_record->onTreatment(treatment);
    }
    return !isRefused;
}

bool DAbstractPluginBackend::hasPendingTreatments() const
{
    return m_record->pending;
}
