#pragma once

#include <QString>

class QCommandLineParser;

/// Reads the arguments of this process, which may be options only; ends it with status 2 otherwise.
void readOptions(QCommandLineParser* parser);

/// The value of an option as a whole number from lowest to highest; another value ends the process with
/// status 2.
quint64 wholeNumber(const QCommandLineParser& parser, const QString& option, quint64 lowest, quint64 highest);
