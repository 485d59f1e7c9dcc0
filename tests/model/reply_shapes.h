#pragma once

#include "literals.h"

#include <QVariant>
#include <QVector>

#include <limits>

/// A form of reply that a device may give, and what a command can find in it.
struct ReplyShape
{
    const char* name;
    QVariantMap reply;
    bool hasValue;            ///< under "value"
    bool hasOneReading;       ///< a list of one under "values"
    bool hasReadingOfAnyKind; ///< the same, or a single value that a number can be made of
};

inline const QVector<ReplyShape>& replyShapes()
{
    static const QString value = "value"_s;
    static const QString values = "values"_s;
    static const int highest = std::numeric_limits<int>::max();
    static const QVector<ReplyShape> shapes = {
        {"a value and a reading", {{value, 1}, {values, QVariantList{1}}}, true, true, true},
        {"a low value and reading", {{value, 0}, {values, QVariantList{0}}}, true, true, true},
        {"a huge value and reading", {{value, highest}, {values, QVariantList{highest}}}, true, true, true},
        {"a text for both", {{value, "high"_s}, {values, "high"_s}}, true, false, true},
        {"a negative reading", {{values, QVariantList{-1}}}, false, true, true},
        {"a single number", {{values, 65535}}, false, false, true},
        {"no reading", {{values, QVariantList()}}, false, false, false},
        {"two readings", {{values, QVariantList{0, 1}}}, false, false, false},
        {"a map of readings", {{values, QVariantMap{{value, 1}}}}, false, false, false},
        {"an invalid value", {{value, QVariant()}}, true, false, false},
        {"other keys", {{"garbled"_s, true}}, false, false, false},
        {"nothing", {}, false, false, false},
    };
    return shapes;
}
