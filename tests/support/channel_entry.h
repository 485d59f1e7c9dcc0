#pragma once

#include <QVariant>

/// The entry of the channel id in a tool's configuration, called "Name of ID", with these items.
QVariantMap channelEntry(const QString& id, const QVariantMap& items,
                         const QString& visibility = QStringLiteral("public"));
/// The same with the items that every working channel has.
QVariantMap channelEntry(const QString& id, const QString& type, const QString& direction,
                         const QString& link, const QString& visibility = QStringLiteral("public"));
