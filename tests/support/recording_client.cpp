#include "recording_client.h"

void RecordingClient::requestReplied(quint64 id, const QVariantMap& reply, qint64 timeUs)
{
    remember({id, reply, timeUs, DFailure()});
}

void RecordingClient::requestFailed(quint64 id, const DFailure& failure)
{
    remember({id, QVariantMap(), 0, failure});
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
    QStringList texts;
    for (const Heard& what : heard) {
        if (what.failure) {
            texts.append(what.failure.text);
        }
    }
    return texts;
}

QVariantList RecordingClient::replied(const QString& key, quint64 id) const
{
    QVariantList values;
    for (const Heard& what : heard) {
        if (what.reply.contains(key) && (id == 0 || what.id == id)) {
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
