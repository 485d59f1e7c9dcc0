#pragma once

#include <plugin_management/d_abstract_plugin_backend.h>

class WatchedBackend;

/// Hears, at the very moment, what becomes of treatments.
class BackendObserver
{
public:
    virtual void treatmentReplied(WatchedBackend* backend, int id, const QString& name) = 0;
    virtual void treatmentReleased(WatchedBackend* backend, int id, const QString& name, bool success) = 0;

protected:
    ~BackendObserver() = default;
};

/// A page's backend that tells what becomes of its treatments.
class WatchedBackend : public DAbstractPluginBackend
{
    Q_OBJECT
    Q_DISABLE_COPY(WatchedBackend)

public:
    explicit WatchedBackend(BackendObserver* observer);
    ~WatchedBackend() override;

    bool applyTreatmentReply(int id, const QString& name, const QVariantMap& reply) override;
    void treatmentReleased(int id, const QString& name, bool success) override;

private:
    BackendObserver* m_observer;
};
