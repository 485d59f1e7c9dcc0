#pragma once

#include <QString>

#include <string>

/// Writes a line for people to standard error, "appvantor: TEXT". Standard error waits for no reader:
/// messages that find no room are counted, and the count is told in their place.
Q_DECL_EXPORT void diagnostic(const QString& text);

/// Writes a line to standard error as it is.
void writeMessageLine(const std::string& line);

/// Draws what stands on the terminal below the output; not while anything else waits for the reader.
void writeStatusLine(const std::string& text);

/// Writes out what still waits for the reader of standard error; a signal ends that. To be called before the
/// process ends.
void drainStandardError();
