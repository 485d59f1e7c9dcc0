#include "recording_backend.h"

#include "literals.h"

#include <QJsonDocument>
#include <QJsonObject>

RecordingBackend::RecordingBackend(QObject* parent)
    : DAbstractPluginBackend("TestLibrary"_s, parent)
{}

RecordingBackend::~RecordingBackend() = default;

bool RecordingBackend::applyTreatmentReply(int id, const QString& name, const QVariantMap& reply)
{
    const QByteArray items = QJsonDocument(QJsonObject::fromVariantMap(reply)).toJson(QJsonDocument::Compact);
    told.append("reply %1 %2 %3"_s.arg(id).arg(name, QString::fromUtf8(items)));
    if (onReply) {
        onReply();
    }
    return true;
}

void RecordingBackend::treatmentReleased(int id, const QString& name, bool success)
{
    told.append("released %1 %2 %3"_s.arg(id).arg(name, success ? "true"_s : "false"_s));
    if (onRelease) {
        const auto call = onRelease; // which may destroy this backend
        call(id);
    }
}
