#include "channel_entry.h"

#include "literals.h"

QVariantMap channelEntry(const QString& id, const QVariantMap& items, const QString& visibility)
{
    QVariantList pairs;
    for (auto item = items.cbegin(); item != items.cend(); ++item) {
        pairs.append(QVariantMap{{"id"_s, item.key()}, {"value"_s, item.value()}});
    }
    return {{"id"_s, id}, {"name"_s, "Name of "_s + id}, {"visibility"_s, visibility}, {"value"_s, pairs}};
}

QVariantMap channelEntry(const QString& id, const QString& type, const QString& direction,
                         const QString& link, const QString& visibility)
{
    return channelEntry(id, {{"type"_s, type}, {"direction"_s, direction}, {"link"_s, link}}, visibility);
}
