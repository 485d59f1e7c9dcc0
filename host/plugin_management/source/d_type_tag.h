#pragma once

#include <plugin_management/d_wording.h>

#include <QString>
#include <QVariant>

/// True when value is what the tag of a declaration names already; see convertToTypeTag.
bool isOfTypeTag(const QString& tag, const QVariant& value);

/// Converts value to the type that a declaration's tag names: "strg" to a text, "ui16" to an int 0..65535,
/// "int" to an int, "bool" to a bool; "vart" and unknown tags take every value as it is. Returns false,
/// leaving value as it was, when the type cannot hold it.
bool convertToTypeTag(const QString& tag, QVariant* value);

/// What a declaration's tag takes, for messages: "a whole number from 0 to 65535", for example.
DWording typeTagExpectation(const QString& tag);
