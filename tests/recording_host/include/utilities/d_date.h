#pragma once

#include <QString>

/// The date text that HostRecord holds.
Q_DECL_EXPORT QString getDate();
