#pragma once

#include <plugin_management/i_plugin.h>

#include <QVector>

class DAbstractCommand;
class DAbstractPlugin;

/// What one plugin object asked of its base.
struct PluginRecord
{
    struct Property
    {
        QString name;
        QVariant value;
        bool flag;
    };

    /// Arguments of the construction.
    QUuid pluginUuid;
    QString pluginName;
    IPlugin::Type type;
    unsigned long long version;
    QUuid objectUuid;
    QObject* parent;
    bool flag;

    QVector<Property> properties;
    QVector<DAbstractCommand*> prototypes;
};

/// The record of plugin, which lives as long as the plugin.
Q_DECL_EXPORT PluginRecord& recordOf(const DAbstractPlugin& plugin);
