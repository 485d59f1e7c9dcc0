#include "recording_client.h"

void RecordingClient::requestReplied(quint64 id, const QVariantMap& reply)
{
    remember({id, reply, QString()});
}

void RecordingClient::requestFailed(quint64 id, const QString& reason)
{
    remember({id, QVariantMap(), reason});
}

QVector<quint64> RecordingClient::ids() const
{
    QVector<quint64> all;
    for (const Heard& what : heard) {
        all.append(what.id);
    }
    return all;
}

QStringList RecordingClient::failures() const
{
    QStringList reasons;
    for (const Heard& what : heard) {
        if (!what.failure.isEmpty()) {
            reasons.append(what.failure);
        }
    }
    return reasons;
}

QVariantList RecordingClient::replied(const QString& key) const
{
    QVariantList values;
    for (const Heard& what : heard) {
        if (what.failure.isEmpty()) {
            values.append(what.reply.value(key));
        }
    }
    return values;
}

void RecordingClient::remember(const Heard& what)
{
    heard.append(what);
    if (then) {
        const auto call = then; // which may destroy this client
        call(what);
    }
}
