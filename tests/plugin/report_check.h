#pragma once

#include "message_log.h"

#include <QObject>

/// What is wrong with message as the error report of reporter, whose source is "plugins/…/<source>" and whose
/// error text is text; empty when nothing is. The line must be one of the source that makes a report.
QString reportProblem(const Message& message, const QObject& reporter, const QString& source,
                      const QString& text);

/// Fails the test unless log holds the one report of reporter with the error text.
#define COMPARE_ONE_REPORT(log, reporter, source, text)                                                      \
    do {                                                                                                     \
        QCOMPARE((log).messages().size(), 1);                                                                \
        const QString problem = reportProblem((log).messages().first(), reporter, source, text);             \
        QVERIFY2(problem.isEmpty(), qPrintable(problem));                                                    \
    } while (false)
