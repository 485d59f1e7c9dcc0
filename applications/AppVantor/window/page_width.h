#pragma once

#include <plugin_management/d_tool.h>

#include <QFont>

/// The width at which the maintenance page shows the rows of these channels whole, in a font of this family
/// and size: identifiers and names, and any level of an analogue output. 0 where it has no rows.
double pageWidth(const QVector<DToolChannel>& channels, const QFont& font);
