#include "report_check.h"

#include "host_record.h"
#include "text.h"

#include <QFile>
#include <QThread>

namespace {

QString printed(const QObject& object)
{
    const QString address = QString::number(reinterpret_cast<quintptr>(&object), 16);
    const QString name =
        object.objectName().isEmpty() ? QString() : ", name = \"%1\""_q.arg(object.objectName());
    return "%1(0x%2%3)"_q.arg(QLatin1String(object.metaObject()->className()), address, name);
}

bool makesAReport(const QString& source, int line)
{
    QFile file(QStringLiteral(TOOL_GPIO_SOURCE_DIR "/") + source + ".cpp"_q);
    if (line < 1 || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return false;
    }
    const QList<QByteArray> lines = file.readAll().split('\n');
    return line <= lines.size() && lines.at(line - 1).contains("errorReport(");
}

} // namespace

QString reportProblem(const Message& message, const QObject& reporter, const QString& source,
                      const QString& text)
{
    if (message.type != QtCriticalMsg || message.category != "default"_q || message.hasFile ||
        message.line != 0 || message.hasFunction) {
        return "not a critical message of the category default without a place"_q;
    }
    const QString path = "plugins/p_tool_gpio/source/"_q + source;
    const QStringList items = message.text.split(" ;\t "_q);
    const int line = items.value(4).toInt();
    const QStringList expected = {"\n \"%1\""_q.arg(hostRecord().date),
                                  "Thread = "_q + printed(*QThread::currentThread()),
                                  "This = "_q + printed(reporter),
                                  path,
                                  QString::number(line),
                                  text};
    if (items != expected) {
        return "\"%1\" instead of \"%2\""_q.arg(message.text, expected.join(" ;\t "_q));
    }
    if (!makesAReport(path, line)) {
        return "line %1 of the source makes no report"_q.arg(line);
    }
    return QString();
}
