#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

/// A command and its arguments as a person writes them: COMMAND NAME=VALUE …
struct Invocation
{
    QString command;
    QVariantMap arguments;
};

/// Splits a shell line into words at blanks. "…" and '…' keep blanks; a backslash keeps the next character.
/// JSON keeps its quotes and backslashes: what stands in brackets or braces, and a "…" right after "=".
/// problem receives what is wrong, or nothing.
QStringList splitLine(const QString& line, QString* problem);

/// Reads the words of an invocation; there must be one at least. A value that looks like JSON ([, { or a
/// quoted text) is read as JSON. problem receives what is wrong, or nothing.
Invocation readInvocation(const QStringList& words, QString* problem);
