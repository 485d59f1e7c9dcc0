#include "watched_backend.h"

WatchedBackend::WatchedBackend()
    : DAbstractPluginBackend(QStringLiteral("TestLibrary"), nullptr)
{}

WatchedBackend::~WatchedBackend() = default;

bool WatchedBackend::applyTreatmentReply(int id, const QString& name, const QVariantMap&)
{
    onReply(id, name);
    return true;
}

void WatchedBackend::treatmentReleased(int id, const QString& name, bool success)
{
    const auto call = onRelease; // which may destroy this backend
    call(id, name, success);
}
