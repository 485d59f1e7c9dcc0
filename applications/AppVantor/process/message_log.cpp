#include "message_log.h"

#include "diagnostics.h"

#include <QCoreApplication>
#include <QThread>

namespace {

int leastSeverity = 0;

int severity(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return 0;
    case QtInfoMsg:
        return 1;
    case QtWarningMsg:
        return 2;
    case QtCriticalMsg:
        return 3;
    case QtFatalMsg:
        break;
    }
    return 4; // what ends the process is always told
}

/// Standard error is the main thread's.
void writeMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    Q_UNUSED(context)
    if (severity(type) < leastSeverity) {
        return;
    }
    const std::string line = message.toStdString();
    QCoreApplication* application = QCoreApplication::instance();
    if (type == QtFatalMsg || application == nullptr || application->thread() == QThread::currentThread()) {
        writeMessageLine(line);
    } else {
        QMetaObject::invokeMethod(
            application, [line] { writeMessageLine(line); }, Qt::QueuedConnection);
    }
    if (type == QtFatalMsg) {
        drainStandardError(); // the process ends with it
    }
}

} // namespace

QStringList logLevels()
{
    return {QStringLiteral("debug"), QStringLiteral("info"), QStringLiteral("warning"),
            QStringLiteral("critical"), QStringLiteral("off")};
}

void installMessageLog(const QString& level)
{
    leastSeverity = logLevels().indexOf(level);
    qInstallMessageHandler(writeMessage);
}
