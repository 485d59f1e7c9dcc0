#pragma once

#include <QVariantMap>

/// A value as people write it: texts as they are, lists and maps as JSON, nothing as a dash.
Q_DECL_EXPORT QString valueText(const QVariant& value);

/// Names with their values: "channel=START state=ON".
Q_DECL_EXPORT QString assignmentsText(const QVariantMap& values);

/// A command with its arguments: "setValue channel=START state=ON".
Q_DECL_EXPORT QString invocationText(const QString& command, const QVariantMap& arguments);
