#pragma once

#include "observer.h"

#include <plugin_management/d_abstract_plugin_backend.h>

/// A page's backend that tells what becomes of its treatments.
class WatchedBackend : public DAbstractPluginBackend
{
    Q_OBJECT
    Q_DISABLE_COPY(WatchedBackend)

public:
    explicit WatchedBackend(Observer* observer);
    ~WatchedBackend() override;

    bool applyTreatmentReply(int id, const QString& name, const QVariantMap& reply) override;
    void treatmentReleased(int id, const QString& name, bool success) override;

private:
    Observer* m_observer;
};
