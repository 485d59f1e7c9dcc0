#pragma once

#include <utilities/utilities_global.h>

#include <QString>

/// Turns a version text of one to four numbers, each 0..65535, into the host's 64-bit version number:
/// 16 bits for each number, the first in the highest bits, missing ones 0 ("1.0" is 0x0001000000000000).
/// ok, when given, receives success. A malformed text gives 0 and false.
UTILITIES_EXPORT unsigned long long versionFromString(const QString& text, bool* ok = nullptr,
                                                      QChar separator = QLatin1Char('.'));
