#pragma once

#include <plugin_management/d_wording.h>

#include <QString>
#include <QVariant>

#include <optional>

/// The argument key of a request as a whole number from 0 to 65535. Without such a number nothing is
/// returned, and problem says what was wrong.
std::optional<int> wholeArgument(const QVariantMap& arguments, const QString& key, DWording* problem);
