#pragma once

#include "broker.h"

#include <QJsonObject>

/// Hears what is said on a broker: mosquitto_sub.
class Reader
{
public:
    /// Begins to hear pattern; it does when this returns.
    Reader(const Broker& broker, const QString& pattern, const QStringList& options = {});
    ~Reader();
    Q_DISABLE_COPY(Reader)

    /// Waits until a message to topic holds text, and returns the first one that does; empty when that takes
    /// too long.
    QByteArray waitFor(const QByteArray& topic, const QByteArray& text = QByteArray());
    /// The messages to topic so far.
    QVector<QByteArray> messages(const QByteArray& topic);

private:
    void readMore(int timeoutMs);

    QProcess m_process;
    QByteArray m_rest;
    QVector<QPair<QByteArray, QByteArray>> m_messages;
};

/// Sends a message: mosquitto_pub, with further options.
void publish(const Broker& broker, const QString& topic, const QByteArray& payload,
             const QStringList& options = {});

/// Sends a message with a response topic, and returns the first answer: mosquitto_rr. An empty one when none
/// came within 2 s.
QByteArray ask(const Broker& broker, const QString& topic, const QByteArray& payload,
               const QString& answerTo = "answers/here"_s);

/// The object that text holds.
QJsonObject objectOf(const QByteArray& text);
