#pragma once

#include <QMutex>
#include <QMutexLocker>
#include <QString>
#include <QStringList>
#include <QVector>

#include <utility>

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
    MessageLog()
    {
        Q_ASSERT(s_current == nullptr);
        s_current = this;
        m_previous = qInstallMessageHandler(&MessageLog::take);
    }

    ~MessageLog()
    {
        qInstallMessageHandler(m_previous);
        const QMutexLocker locker(&s_mutex);
        s_current = nullptr;
    }
    Q_DISABLE_COPY(MessageLog)

    const QVector<Message>& messages() const { return m_messages; }

    QStringList texts() const
    {
        QStringList texts;
        for (const Message& message : m_messages) {
            texts.append(message.text);
        }
        return texts;
    }

    /// The warnings and errors since the last call, one a line; forgets all messages.
    QString takeProblems()
    {
        QStringList problems;
        for (const Message& message : std::exchange(m_messages, {})) {
            if (message.type == QtWarningMsg || message.type == QtCriticalMsg) {
                problems.append(message.text);
            }
        }
        return problems.join(QLatin1Char('\n'));
    }

private:
    static void take(QtMsgType type, const QMessageLogContext& context, const QString& text)
    {
        const QMutexLocker locker(&s_mutex);
        if (s_current != nullptr) {
            s_current->m_messages.append({type, text, QString::fromUtf8(context.category),
                                          context.file != nullptr, context.line,
                                          context.function != nullptr});
        }
    }

    static inline MessageLog* s_current = nullptr;
    static inline QMutex s_mutex;

    QVector<Message> m_messages;
    QtMessageHandler m_previous;
};
