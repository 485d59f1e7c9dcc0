#include "watched_backend.h"

WatchedBackend::WatchedBackend(BackendObserver* observer)
    : DAbstractPluginBackend(QStringLiteral("TestLibrary"), nullptr)
    , m_observer(observer)
{}

WatchedBackend::~WatchedBackend() = default;

bool WatchedBackend::applyTreatmentReply(int id, const QString& name, const QVariantMap& reply)
{
    Q_UNUSED(reply)
    m_observer->treatmentReplied(this, id, name);
    return true;
}

void WatchedBackend::treatmentReleased(int id, const QString& name, bool success)
{
    m_observer->treatmentReleased(this, id, name, success);
}
