#pragma once

#include "literals.h"

#include <QMetaMethod>
#include <QMetaProperty>
#include <QStringList>

inline QString textOf(const QMetaEnum& enumeration)
{
    QStringList keys;
    for (int i = 0; i < enumeration.keyCount(); ++i) {
        keys.append("%1 %2"_s.arg(QLatin1String(enumeration.key(i))).arg(enumeration.value(i)));
    }
    const QString kind = enumeration.isFlag() ? "flags"_s : "enum"_s;
    return "%1 %2: %3"_s.arg(kind, QLatin1String(enumeration.name()), keys.join(", "_s));
}

inline QString textOf(const QMetaProperty& property)
{
    QString text =
        "property %1 %2:"_s.arg(QLatin1String(property.typeName()), QLatin1String(property.name()));
    const QVector<QPair<bool, QString>> traits = {{property.isReadable(), "readable"_s},
                                                  {property.isWritable(), "writable"_s},
                                                  {property.isResettable(), "resettable"_s},
                                                  {property.isConstant(), "constant"_s},
                                                  {property.isFinal(), "final"_s}};
    for (const auto& [holds, trait] : traits) {
        text += holds ? QLatin1Char(' ') + trait : QString();
    }
    return text + ", "_s + QString::fromLatin1(property.notifySignal().methodSignature());
}

inline QString textOf(const QMetaMethod& method)
{
    static const QStringList kinds = {"method"_s, "signal"_s, "slot"_s, "constructor"_s};
    static const QStringList accesses = {"private"_s, "protected"_s, "public"_s};
    QStringList parameters;
    for (int i = 0; i < method.parameterCount(); ++i) {
        parameters.append(
            QString::fromLatin1(method.parameterTypes().at(i) + ' ' + method.parameterNames().at(i)));
    }
    return "%1 %2 %3 %4(%5)"_s.arg(accesses.at(method.access()), kinds.at(method.methodType()),
                                   QLatin1String(method.typeName()), QString::fromLatin1(method.name()),
                                   parameters.join(", "_s));
}

/// What a class adds to the meta-object of its base: a line for the class, then one for each enumeration,
/// property, method, piece of class information and constructor, in their order, with all that is told of it.
inline QStringList metaObjectText(const QMetaObject& meta)
{
    QStringList text = {
        "%1: %2"_s.arg(QLatin1String(meta.className()), QLatin1String(meta.superClass()->className()))};
    for (int i = meta.enumeratorOffset(); i < meta.enumeratorCount(); ++i) {
        text.append(textOf(meta.enumerator(i)));
    }
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        text.append(textOf(meta.property(i)));
    }
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        text.append(textOf(meta.method(i)));
    }
    for (int i = meta.classInfoOffset(); i < meta.classInfoCount(); ++i) {
        text.append("information "_s + QLatin1String(meta.classInfo(i).name()));
    }
    for (int i = 0; i < meta.constructorCount(); ++i) {
        text.append(textOf(meta.constructor(i)));
    }
    return text;
}
