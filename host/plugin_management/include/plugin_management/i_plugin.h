#pragma once

#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QUuid>
#include <QVariant>

/// What the host sees of a plugin: its identity, its properties and its commands.
class IPlugin
{
public:
    /// Kind of plugin: four ASCII letters, packed big-endian into 32 bits.
    enum Type : quint32
    {
        CeTpUnknown = 0,
        CeTpTool = 0x546F6F6C,
    };

    /// Makes a working instance for the object called objectUuid, without a parent; the caller owns it.
    virtual IPlugin* createInstance(const QUuid& objectUuid) const = 0;
    /// Name of the plugin's kind within its type.
    virtual const char* pluginSubTypeName() const = 0;
    /// Identifier of the configured object that this instance serves; null for a prototype.
    virtual QUuid objectUuid() const = 0;
    /// Name of the object: the plugin's name, and the object's identifier where it has one.
    virtual QString getName() const = 0;
    /// Identifier of the plugin.
    virtual QUuid pluginUuid() const = 0;
    /// Name of the plugin.
    virtual QString pluginName() const = 0;
    /// Version of the plugin as versionFromString makes it.
    virtual unsigned long long pluginVersion() const = 0;
    /// Kind of the plugin.
    virtual Type pluginType() const = 0;
    /// Identifiers of the plugins that can stand in for this one; at least its own.
    virtual QStringList compatiblePlugins() const = 0;
    /// compatiblePlugins() as one text, separated by ';'.
    virtual QString compatibilityString() const = 0;
    /// Value of the plugin's property name; an invalid variant when there is none.
    virtual QVariant getProperty(const QString& name) const = 0;
    /// Value of the plugin's property name; fallback when there is none.
    virtual QVariant getProperty(const QString& name, const QVariant& fallback) const = 0;
    /// Names of the declared commands, in the order of their declaration.
    virtual QStringList getFunctions() const = 0;
    /// One-line description of the command name; empty when there is none of that name.
    virtual QString getFunctionDescription(const QString& name) const = 0;
    /// Parameters of the command name in their order, each a map with "name", "type", "description" and
    /// "default"; empty when there is no command of that name.
    virtual QVariantList getCommandParameters(const QString& name) const = 0;
    /// Replaces the main configuration, the one of the configured object.
    virtual void setMainConfig(const QVariantMap& config) = 0;
    /// Entry key of the main configuration; an invalid variant when there is none.
    virtual QVariant getInMainConfig(const QString& key) const = 0;
    /// Entry key of the plugin's own configuration; an invalid variant when there is none.
    virtual QVariant getInPluginConfig(const QString& key) const = 0;
    /// Name, object identifier and version in one line, for diagnostics.
    virtual QString getDebugIdentification() const = 0;
    /// The whole main configuration.
    virtual QVariantMap getMainConfig() const = 0;
    /// Sets the entry key of the plugin's own configuration.
    virtual void setInPluginConfig(const QString& key, const QVariant& value) = 0;
    /// Sets the entry key of the main configuration.
    virtual void setInMainConfig(const QString& key, const QVariant& value) = 0;

    virtual ~IPlugin() = default;
};
