#include "message_log.h"

#include "diagnostics.h"

#include <QCoreApplication>
#include <QRegularExpression>
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

/// A plugin's error report as people read it, "SOURCE:LINE: TEXT"; any other message as it is. A report
/// consists of date, thread, reporter, source file, line and text.
QString readable(const QString& message)
{
    const QString separator = QStringLiteral(" ;\t ");
    constexpr int sourceItem = 3;
    constexpr int lineItem = 4;
    constexpr int textItem = 5;
    const QStringList items = message.split(separator);
    if (!message.startsWith(QLatin1Char('\n')) || items.size() <= textItem) {
        return message;
    }
    return QStringLiteral("%1:%2: %3")
        .arg(items.at(sourceItem).section(QLatin1Char('/'), -1), items.at(lineItem),
             items.mid(textItem).join(separator));
}

/// What Qt itself complains of, "QClass::function: …", is for those who look into the bench.
bool isOfQt(QtMsgType type, const QString& message)
{
    static const QRegularExpression beginning(QStringLiteral("^Q[A-Z]\\w*(::|: )"));
    return type == QtWarningMsg && beginning.match(message).hasMatch();
}

/// Standard error is the main thread's.
void writeMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    Q_UNUSED(context)
    if (severity(type) < leastSeverity || (leastSeverity > 0 && isOfQt(type, message))) {
        return;
    }
    const std::string line = (leastSeverity > 0 ? readable(message) : message).toStdString();
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
