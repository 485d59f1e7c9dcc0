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

    void requestReplied(quint64 id, const QVariantMap& reply, qint64 timeUs) override
    {
        remember({id, reply, timeUs, DFailure()});
    }
    void requestFailed(quint64 id, const DFailure& failure) override
    {
        remember({id, QVariantMap(), 0, failure});
    }
    void repliesLost(quint64 id, quint64 count) override { lost.append({id, count}); }

    QVector<quint64> ids() const
    {
        QVector<quint64> all;
        for (const Heard& what : heard) {
            all.append(what.id);
        }
        return all;
    }

    /// The texts of the failures.
    QStringList failures() const
    {
        QStringList texts;
        for (const Heard& what : heard) {
            if (what.failure) {
                texts.append(what.failure.text.english());
            }
        }
        return texts;
    }

    /// The item key of every reply that has it; with an id, of those to that request only.
    QVariantList replied(const QString& key, quint64 id = 0) const
    {
        QVariantList values;
        for (const Heard& what : heard) {
            if (what.reply.contains(key) && (id == 0 || what.id == id)) {
                values.append(what.reply.value(key));
            }
        }
        return values;
    }

    QVector<Heard> heard;
    /// How many replies were lost, with their requests.
    QVector<QPair<quint64, quint64>> lost;
    /// Carried out after each reply or failure is remembered.
    std::function<void(const Heard&)> then;

private:
    void remember(const Heard& what)
    {
        heard.append(what);
        if (then) {
            const auto call = then; // which may destroy this client
            call(what);
        }
    }
};
