#pragma once

#include <QString>

/// Records the call and answers the number that HostRecord holds.
Q_DECL_EXPORT unsigned long long versionFromString(const QString& text, bool* ok, QChar separator);
