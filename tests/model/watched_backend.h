#pragma once

#include <plugin_management/d_abstract_plugin_backend.h>

#include <functional>

/// A page's backend that tells, at the very moment, what becomes of its treatments.
class WatchedBackend : public DAbstractPluginBackend
{
    Q_OBJECT
    Q_DISABLE_COPY(WatchedBackend)

public:
    WatchedBackend();
    ~WatchedBackend() override;

    bool applyTreatmentReply(int id, const QString& name, const QVariantMap& reply) override;
    void treatmentReleased(int id, const QString& name, bool success) override;

    std::function<void(int id, const QString& name)> onReply;
    std::function<void(int id, const QString& name, bool success)> onRelease;
};
