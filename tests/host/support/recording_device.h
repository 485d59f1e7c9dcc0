#pragma once

#include "literals.h"

#include <plugin_management/d_device.h>
#include <plugin_management/d_scheduler.h>

#include <functional>

/// A device that remembers what it is asked, and answers when the test says so. It is there when it is
/// opened.
class RecordingDevice : public DDevice
{
    Q_OBJECT
    Q_DISABLE_COPY(RecordingDevice)

public:
    struct Request
    {
        quint64 id;
        QString instruction;
        QVariantMap arguments;
    };

    explicit RecordingDevice(DScheduler* scheduler)
        : DDevice("Recording device"_s, scheduler)
    {}

    /// Instructions to listen recur.
    bool isRecurring(const QString& instruction) const override { return instruction.startsWith("listen"_s); }

    using DDevice::reply;
    using DDevice::setState;
    using DDevice::tellLost;

    /// Answers with what is true since now.
    void reply(quint64 id, const QVariantMap& reply) { DDevice::reply(id, reply, scheduler()->now()); }
    /// Refuses a request.
    void refuse(quint64 id, const QString& reason)
    {
        fail(id, {DFailure::Kind::RefusedByDevice, DWording::told(reason)});
    }
    void lose(const QString& problem) { setState(State::Unreachable, DWording::told(problem)); }
    void restore() { setState(State::Connected); }

    /// Identifier of the latest request; 0 when there was none.
    quint64 lastId() const { return requests.isEmpty() ? 0 : requests.constLast().id; }

    QStringList instructions() const
    {
        QStringList names;
        for (const Request& request : requests) {
            names.append(request.instruction);
        }
        return names;
    }

    QVector<Request> requests;
    QVector<quint64> cancelled;
    /// "open" and "close", in their order.
    QStringList reached;
    /// Carried out inside the sending of each request.
    std::function<void(const Request&)> onRequest;
    /// Carried out inside the handling of each cancellation.
    std::function<void(quint64 id)> onCancel;

protected:
    void handleOpen() override
    {
        reached.append("open"_s);
        restore();
    }

    void handleClose() override { reached.append("close"_s); }

    void handleRequest(quint64 id, const QString& instruction, const QVariantMap& arguments) override
    {
        const Request request{id, instruction, arguments};
        requests.append(request);
        if (onRequest) {
            onRequest(request);
        }
    }

    void handleCancel(quint64 id) override
    {
        cancelled.append(id);
        if (onCancel) {
            onCancel(id);
        }
    }
};
