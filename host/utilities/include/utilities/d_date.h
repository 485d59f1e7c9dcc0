#pragma once

#include <utilities/utilities_global.h>

#include <QString>

/// The current local date and time as "yyyy-MM-dd HH:mm:ss.zzz", the date text of error reports.
UTILITIES_EXPORT QString getDate();
