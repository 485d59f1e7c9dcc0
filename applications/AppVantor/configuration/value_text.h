#pragma once

#include <QVariantMap>

/// A value as people write it: texts as they are, lists and maps as JSON, nothing as a dash.
QString valueText(const QVariant& value);

/// Names with their values: "channel=START state=ON".
QString assignmentsText(const QVariantMap& values);
