#include "warning_guard.h"

#include <QtDebug>

namespace {

QStringList s_messages;
QtMessageHandler s_previous = nullptr;

void collect(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type == QtWarningMsg || type == QtCriticalMsg) {
        s_messages.append(message);
    }
    s_previous(type, context, message);
}

} // namespace

WarningGuard::WarningGuard()
{
    s_messages.clear();
    s_previous = qInstallMessageHandler(collect);
}

WarningGuard::~WarningGuard()
{
    qInstallMessageHandler(s_previous);
}

QString WarningGuard::takeMessages()
{
    return std::exchange(s_messages, {}).join(QLatin1Char('\n'));
}
