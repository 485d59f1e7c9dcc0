#pragma once

#include <plugin_management/d_abstract_plugin_backend.h>

#include <functional>

/// A page's backend that remembers what became of its treatments.
class RecordingBackend : public DAbstractPluginBackend
{
    Q_OBJECT
    Q_DISABLE_COPY(RecordingBackend)

public:
    explicit RecordingBackend(QObject* parent = nullptr);
    ~RecordingBackend() override;

    bool applyTreatmentReply(int id, const QString& name, const QVariantMap& reply) override;
    void treatmentReleased(int id, const QString& name, bool success) override;

    DTool* tool() const { return boundToolObject; }

    /// "reply 1 work {"value":3}", "released 1 work true", in the order of the telling.
    QStringList told;
    /// Carried out after each reply and each release was remembered.
    std::function<void()> onReply;
    std::function<void(int id)> onRelease;
};
