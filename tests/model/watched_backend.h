#pragma once

#include <plugin_management/d_abstract_plugin_backend.h>

#include <functional>

/// A page's backend that tells, at the very moment, what becomes of its treatments.
class WatchedBackend : public DAbstractPluginBackend
{
    Q_OBJECT
    Q_DISABLE_COPY(WatchedBackend)

public:
    WatchedBackend()
        : DAbstractPluginBackend(QStringLiteral("TestLibrary"), nullptr)
    {}

    bool applyTreatmentReply(int id, const QString& name, const QVariantMap&) override
    {
        onReply(id, name);
        return true;
    }

    void treatmentReleased(int id, const QString& name, bool success) override
    {
        const auto call = onRelease; // which may destroy this backend
        call(id, name, success);
    }

    std::function<void(int id, const QString& name)> onReply;
    std::function<void(int id, const QString& name, bool success)> onRelease;
};
