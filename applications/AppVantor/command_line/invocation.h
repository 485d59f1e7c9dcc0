#pragma once

#include <configuration/channel_orders.h>

#include <QString>
#include <QStringList>

/// Splits a shell line into words at blanks. "…" and '…' keep blanks; a backslash keeps the next character.
/// JSON keeps its quotes and backslashes: what stands in brackets or braces, and a "…" right after "=".
/// problem receives what is wrong, or nothing.
QStringList splitLine(const QString& line, DWording* problem);

/// Reads the words of an invocation; there must be one at least. A value that looks like JSON ([, { or a
/// quoted text) is read as JSON. problem receives what is wrong, or nothing.
Invocation readInvocation(const QStringList& words, DWording* problem);
