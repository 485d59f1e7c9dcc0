#include "recording_device.h"

#include "literals.h"

RecordingDevice::RecordingDevice()
    : DDevice("Recording device"_s)
{}

RecordingDevice::~RecordingDevice() = default;

QVector<DLine> RecordingDevice::lines() const
{
    return {};
}

int RecordingDevice::level(int line) const
{
    Q_UNUSED(line)
    return 0;
}

quint64 RecordingDevice::lastId() const
{
    return requests.isEmpty() ? 0 : requests.constLast().id;
}

QStringList RecordingDevice::instructions() const
{
    QStringList names;
    for (const Request& request : requests) {
        names.append(request.instruction);
    }
    return names;
}

void RecordingDevice::handleRequest(quint64 id, const QString& instruction, const QVariantMap& arguments)
{
    const Request request{id, instruction, arguments};
    requests.append(request);
    if (onRequest) {
        onRequest(request);
    }
}

void RecordingDevice::handleCancel(quint64 id)
{
    cancelled.append(id);
    if (onCancel) {
        onCancel(id);
    }
}
