#pragma once

#include <QString>

/// The text as a field of comma-separated values: in quotes where it would be taken for more than one.
QString csvField(const QString& text);
