#pragma once

#include <QString>
#include <QStringList>

/// Names of the log levels, from the most to the least talkative: "debug", "info", "warning", "critical",
/// "off".
QStringList logLevels();

/// From now on, messages of at least this level go to standard error, a line each. level is one of
/// logLevels(); with "debug" the error reports of plugins are told in full, and Qt's own complaints, too;
/// else reports in short, and these not at all.
void installMessageLog(const QString& level);
