#pragma once

#include <QDebug>

class QObject;

/// Starts an error report: a critical message of the category "default", without file, line or function in
/// its context, that begins with the date, the current thread, the reporter, and the source file and line of
/// the report. The caller streams the error text; the message is written when the returned stream goes.
QDebug errorReport(const QObject* reporter, const char* source, int line);
