#pragma once

#include <QtGlobal>

#ifdef UTILITIES_LIBRARY
#define UTILITIES_EXPORT Q_DECL_EXPORT
#else
#define UTILITIES_EXPORT Q_DECL_IMPORT
#endif
