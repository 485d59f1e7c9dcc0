#pragma once

#include <plugin_management/d_device.h>

#include <functional>

/// Remembers what a device tells it, in the order of the telling.
class RecordingClient : public DDeviceClient
{
public:
    struct Heard
    {
        quint64 id;
        QVariantMap reply;
        QString failure;
    };

    virtual ~RecordingClient() = default;

    void requestReplied(quint64 id, const QVariantMap& reply) override;
    void requestFailed(quint64 id, const QString& reason) override;

    QVector<quint64> ids() const;
    QStringList failures() const;
    /// The item key of every reply.
    QVariantList replied(const QString& key) const;

    QVector<Heard> heard;
    /// Carried out after each reply or failure is remembered.
    std::function<void(const Heard&)> then;

private:
    void remember(const Heard& what);
};
