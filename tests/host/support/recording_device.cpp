#include "recording_device.h"

#include "literals.h"

#include <plugin_management/d_scheduler.h>

RecordingDevice::RecordingDevice(DScheduler* scheduler)
    : DDevice("Recording device"_s, scheduler)
{}

RecordingDevice::~RecordingDevice() = default;

bool RecordingDevice::isRecurring(const QString& instruction) const
{
    return instruction.startsWith("listen"_s);
}

void RecordingDevice::reply(quint64 id, const QVariantMap& reply)
{
    DDevice::reply(id, reply, scheduler()->now());
}

void RecordingDevice::refuse(quint64 id, const QString& reason)
{
    fail(id, {DFailure::Kind::RefusedByDevice, reason});
}

void RecordingDevice::lose(const QString& problem)
{
    setState(State::Unreachable, problem);
}

void RecordingDevice::restore()
{
    setState(State::Connected);
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

void RecordingDevice::handleOpen()
{
    reached.append("open"_s);
    restore();
}

void RecordingDevice::handleClose()
{
    reached.append("close"_s);
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
