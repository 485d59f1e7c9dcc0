#pragma once

#include <QVariant>
#include <QVector>

/// A form of reply that a device may give, and what a command can find in it.
struct ReplyShape
{
    const char* name;
    QVariantMap reply;
    bool hasValue;            ///< under "value"
    bool hasOneReading;       ///< a list of one under "values"
    bool hasReadingOfAnyKind; ///< the same, or a single value that a number can be made of
};

const QVector<ReplyShape>& replyShapes();
