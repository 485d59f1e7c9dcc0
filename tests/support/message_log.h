#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// One message of Qt's log with its context as the handler received it.
struct Message
{
    QtMsgType type;
    QString text;
    QString category;
    bool hasFile;
    int line;
    bool hasFunction;
};

/// Takes Qt's log messages while it lives, instead of what took them before. One at a time.
class MessageLog
{
public:
    MessageLog();
    ~MessageLog();
    Q_DISABLE_COPY(MessageLog)

    const QVector<Message>& messages() const { return m_messages; }
    QStringList texts() const;
    /// The warnings and errors since the last call, one a line; forgets all messages.
    QString takeProblems();

private:
    static void take(QtMsgType type, const QMessageLogContext& context, const QString& text);

    QVector<Message> m_messages;
    QtMessageHandler m_previous;
};
