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
        qint64 timeUs;
        DFailure failure;
    };

    virtual ~RecordingClient() = default;

    void requestReplied(quint64 id, const QVariantMap& reply, qint64 timeUs) override;
    void requestFailed(quint64 id, const DFailure& failure) override;
    void repliesLost(quint64 id, quint64 count) override { lost.append({id, count}); }

    QVector<quint64> ids() const;
    /// The texts of the failures.
    QStringList failures() const;
    /// The item key of every reply that has it; with an id, of those to that request only.
    QVariantList replied(const QString& key, quint64 id = 0) const;

    QVector<Heard> heard;
    /// How many replies were lost, with their requests.
    QVector<QPair<quint64, quint64>> lost;
    /// Carried out after each reply or failure is remembered.
    std::function<void(const Heard&)> then;

private:
    void remember(const Heard& what);
};
