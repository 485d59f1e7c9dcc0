#pragma once

#include <QByteArray>
#include <QString>
#include <QUuid>

/// Reads the maintenance page that the plugin pluginUuid carries, with the tool's name and identifier in the
/// place of its placeholders. Returns an empty text when the plugin carries no page.
QByteArray pageSource(const QUuid& pluginUuid, const QString& toolName, const QString& toolId);

/// The page with the placeholders "{OBJECT_NAME}" and "{OBJECT_ID}" replaced; whatever the values hold, they
/// stay inside the QML string literal that they are put into.
QByteArray filledPage(const QByteArray& page, const QString& toolName, const QString& toolId);
