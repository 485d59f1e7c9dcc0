#pragma once

#include <plugin_management/d_tool.h>

#include <vector>

/// A command and its arguments as a person writes them: COMMAND NAME=VALUE …
struct Invocation
{
    QString command;
    QVariantMap arguments;
};

/// The order that gives channel a state, "ON" for example, with further arguments.
Invocation settingState(const DToolChannel& channel, const QString& state, QVariantMap arguments = {});

/// The order that gives channel a level, 0 to 65535.
Q_DECL_EXPORT Invocation settingLevel(const DToolChannel& channel, int level);

/// True when orders drive a line by channel: it is linked and has the direction "out".
Q_DECL_EXPORT bool drivesLine(const DToolChannel& channel);

/// What switches off everything that a tool drives: an order for each channel that drives a line.
Q_DECL_EXPORT std::vector<Invocation> switchingOff(const QVector<DToolChannel>& channels);

/// The words that a parameter knows, by its name; none for one that takes anything.
Q_DECL_EXPORT QStringList knownWords(const QString& parameter);

/// Whether a parameter changes anything beside this state; it may with a state that is not known.
Q_DECL_EXPORT bool countsWith(const QString& state, const QString& parameter);
