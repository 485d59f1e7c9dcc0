#pragma once

#include "exact_compare.h"
#include "literals.h"
#include "message_log.h"
#include "records.h"

#include <QFile>
#include <QObject>
#include <QThread>

inline QString printed(const QObject& object)
{
    const QString address = QString::number(reinterpret_cast<quintptr>(&object), 16);
    const QString name =
        object.objectName().isEmpty() ? QString() : ", name = \"%1\""_s.arg(object.objectName());
    return "%1(0x%2%3)"_s.arg(QLatin1String(object.metaObject()->className()), address, name);
}

inline bool makesAReport(const QString& source, int line)
{
    QFile file(QStringLiteral(TOOL_GPIO_SOURCE_DIR "/") + source + ".cpp"_s);
    if (line < 1 || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return false;
    }
    const QList<QByteArray> lines = file.readAll().split('\n');
    return line <= lines.size() && lines.at(line - 1).contains("errorReport(");
}

/// What is wrong with messages as the one error report of reporter, whose source is "plugins/…/<source>" and
/// whose error text is text; empty when nothing is. The line must be one of the source that makes a report.
inline QString reportProblem(const QVector<Message>& messages, const QObject& reporter, const QString& source,
                             const QString& text)
{
    if (messages.size() != 1) {
        return "%1 messages"_s.arg(messages.size());
    }
    const Message& message = messages.first();
    if (message.type != QtCriticalMsg || message.category != "default"_s || message.hasFile ||
        message.line != 0 || message.hasFunction) {
        return "not a critical message of the category default without a place"_s;
    }
    const QString path = "plugins/p_tool_gpio/source/"_s + source;
    const QStringList items = message.text.split(" ;\t "_s);
    const int line = items.value(4).toInt();
    const QStringList expected = {"\n \"%1\""_s.arg(hostRecord().date),
                                  "Thread = "_s + printed(*QThread::currentThread()),
                                  "This = "_s + printed(reporter),
                                  path,
                                  QString::number(line),
                                  text};
    if (items != expected) {
        return "\"%1\" instead of \"%2\""_s.arg(message.text, expected.join(" ;\t "_s));
    }
    if (!makesAReport(path, line)) {
        return "line %1 of the source makes no report"_s.arg(line);
    }
    return QString();
}

/// Fails the QuietTest unless what it logged since is the one report of reporter with the error text.
#define COMPARE_ONE_REPORT(reporter, source, text)                                                           \
    REQUIRE_NO_PROBLEM(reportProblem(takeMessages(), reporter, source, text))
