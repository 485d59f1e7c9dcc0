#pragma once

#include "literals.h"

#include <plugin_management/d_abstract_plugin_backend.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <functional>

/// A page's backend that remembers what became of its treatments.
class RecordingBackend : public DAbstractPluginBackend
{
    Q_OBJECT
    Q_DISABLE_COPY(RecordingBackend)

public:
    explicit RecordingBackend(QObject* parent = nullptr)
        : DAbstractPluginBackend("TestLibrary"_s, parent)
    {}

    bool applyTreatmentReply(int id, const QString& name, const QVariantMap& reply) override
    {
        const QByteArray items =
            QJsonDocument(QJsonObject::fromVariantMap(reply)).toJson(QJsonDocument::Compact);
        told.append("reply %1 %2 %3"_s.arg(id).arg(name, QString::fromUtf8(items)));
        if (onReply) {
            onReply();
        }
        return true;
    }

    void treatmentReleased(int id, const QString& name, bool success) override
    {
        told.append("released %1 %2 %3"_s.arg(id).arg(name, success ? "true"_s : "false"_s));
        if (onRelease) {
            const auto call = onRelease; // which may destroy this backend
            call(id);
        }
    }

    DTool* tool() const { return boundToolObject; }

    /// "reply 1 work {"value":3}", "released 1 work true", in the order of the telling.
    QStringList told;
    /// Carried out after each reply and each release was remembered.
    std::function<void()> onReply;
    std::function<void(int id)> onRelease;
};
