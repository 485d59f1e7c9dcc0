#pragma once

#include "exact_compare.h"
#include "message_log.h"

#include <QObject>

/// What is wrong with messages as the one error report of reporter, whose source is "plugins/…/<source>" and
/// whose error text is text; empty when nothing is. The line must be one of the source that makes a report.
QString reportProblem(const QVector<Message>& messages, const QObject& reporter, const QString& source,
                      const QString& text);

/// Fails the QuietTest unless what it logged since is the one report of reporter with the error text.
#define COMPARE_ONE_REPORT(reporter, source, text)                                                           \
    REQUIRE_NO_PROBLEM(reportProblem(takeMessages(), reporter, source, text))
