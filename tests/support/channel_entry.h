#pragma once

#include "literals.h"

#include <QVariant>

/// The entry of the channel id in a tool's configuration, called "Name of ID", with these items.
inline QVariantMap channelEntry(const QString& id, const QVariantMap& items,
                                const QString& visibility = QStringLiteral("public"))
{
    QVariantList pairs;
    for (auto item = items.cbegin(); item != items.cend(); ++item) {
        pairs.append(QVariantMap{{"id"_s, item.key()}, {"value"_s, item.value()}});
    }
    return {{"id"_s, id}, {"name"_s, "Name of "_s + id}, {"visibility"_s, visibility}, {"value"_s, pairs}};
}

/// The same with the items that every working channel has.
inline QVariantMap channelEntry(const QString& id, const QString& type, const QString& direction,
                                const QString& link, const QString& visibility = QStringLiteral("public"))
{
    return channelEntry(id, {{"type"_s, type}, {"direction"_s, direction}, {"link"_s, link}}, visibility);
}
