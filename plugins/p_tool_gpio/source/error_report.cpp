#include "error_report.h"

#include <utilities/d_date.h>

#include <QMessageLogger>
#include <QThread>

QDebug errorReport(const QObject* reporter, const char* source, int line)
{
    constexpr auto separator = ";\t";
    QDebug report = QMessageLogger(nullptr, 0, nullptr, "default").critical();
    report << "\n"
           << getDate() << separator << "Thread =" << QThread::currentThread() << separator
           << "This =" << reporter << separator << source << separator << line << separator;
    return report;
}
