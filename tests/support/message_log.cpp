#include "message_log.h"

#include <QMutex>
#include <QMutexLocker>

#include <utility>

namespace {

MessageLog* currentLog = nullptr;

QMutex& logMutex()
{
    static QMutex mutex;
    return mutex;
}

} // namespace

MessageLog::MessageLog()
{
    Q_ASSERT(currentLog == nullptr);
    currentLog = this;
    m_previous = qInstallMessageHandler(&MessageLog::take);
}

MessageLog::~MessageLog()
{
    qInstallMessageHandler(m_previous);
    const QMutexLocker locker(&logMutex());
    currentLog = nullptr;
}

QStringList MessageLog::texts() const
{
    QStringList texts;
    for (const Message& message : m_messages) {
        texts.append(message.text);
    }
    return texts;
}

QString MessageLog::takeProblems()
{
    QStringList problems;
    for (const Message& message : std::exchange(m_messages, {})) {
        if (message.type == QtWarningMsg || message.type == QtCriticalMsg) {
            problems.append(message.text);
        }
    }
    return problems.join(QLatin1Char('\n'));
}

void MessageLog::take(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const QMutexLocker locker(&logMutex());
    if (currentLog != nullptr) {
        currentLog->m_messages.append({type, text, QString::fromUtf8(context.category),
                                       context.file != nullptr, context.line, context.function != nullptr});
    }
}
