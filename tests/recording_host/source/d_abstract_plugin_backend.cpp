#include <plugin_management/d_abstract_plugin_backend.h>

#include "backend_record.h"

BackendRecord& recordOf(const DAbstractPluginBackend& backend)
{
    return *backend.m_record;
}

void bindTool(DAbstractPluginBackend& backend, DBoundTool* tool)
{
    backend.boundToolObject = tool;
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
    const bool accepted = m_record->refusals == 0;
    if (accepted) {
        m_record->treatments.append(treatment);
    } else {
        --m_record->refusals;
        m_record->refused.append(treatment);
    }
    if (m_record->onTreatment) {
        m_record->onTreatment(treatment);
    }
    return accepted;
}

bool DAbstractPluginBackend::hasPendingTreatments() const
{
    return m_record->pending;
}
