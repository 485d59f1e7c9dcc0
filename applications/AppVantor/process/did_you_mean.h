#pragma once

#include <QStringList>

/// "; did you mean "DOOR"?" when one of known is close to word, whose case does not count; else an empty
/// text.
QString didYouMean(const QString& word, const QStringList& known);
