#pragma once

#include <QStringList>

/// What a class adds to the meta-object of its base: a line for the class, then one for each enumeration,
/// property, method, piece of class information and constructor, in their order, with all that is told of it.
QStringList metaObjectText(const QMetaObject& meta);
