#include "message_log.h"

#include "terminal_frame.h"

#include <QtGlobal>

#include <cstdio>
#include <cstdlib>

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

void writeMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    Q_UNUSED(context)
    if (severity(type) >= leastSeverity) {
        const FramedWriting framed;
        std::fprintf(stderr, "%s\n", message.toUtf8().constData());
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
