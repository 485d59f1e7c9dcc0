#pragma once

#include <QByteArray>
#include <QStringList>

/// What is wrong with a line, by docs/json.schema.json; empty when it is right.
QByteArray problemOfJsonLine(const QByteArray& line);

/// Checks every whole line of output that is an object against docs/json.schema.json; the test fails at the
/// first one that does not suit it.
void checkJsonLines(const QByteArray& output);

/// Compares the mistakes that the bench found in a configuration with the verdict of
/// docs/appvantor.schema.json; the test fails where they differ, but for mistakes that no schema can tell.
void checkVerdictOnConfiguration(const QString& file, const QStringList& mistakes);

/// The same for a run of the bench with these arguments, which said errors; where no file was named, nothing.
void checkConfiguration(const QStringList& arguments, const QByteArray& errors);
