#pragma once

#include <QByteArray>

/// What is wrong with a line, by docs/json.schema.json; empty when it is right.
QByteArray problemOfJsonLine(const QByteArray& line);

/// Checks every whole line of output that is an object against docs/json.schema.json; the test fails at the
/// first one that does not suit it.
void checkJsonLines(const QByteArray& output);
