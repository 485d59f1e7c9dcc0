#pragma once

#include <plugin_management/d_wording.h>

#include <QStringList>

/// "; did you mean "DOOR"?" when one of known is close to word, whose case does not count; else nothing.
DWording didYouMean(const QString& word, const QStringList& known);
