#pragma once

#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QUuid>
#include <QVariant>

/// What the host sees of a plugin.
class IPlugin
{
public:
    enum Type
    {
        CeIpNothing = 0,
        CeIpEquipment = 0x546F6F6C
    };

    virtual ~IPlugin() = default;

    virtual IPlugin* createInstance(const QUuid& objectUuid) const = 0;
    virtual const char* pluginSubTypeName() const = 0;
    virtual QUuid objectUuid() const = 0;
    virtual QString getName() const = 0;
    virtual QUuid pluginUuid() const = 0;
    virtual QString pluginName() const = 0;
    virtual unsigned long long pluginVersion() const = 0;
    virtual Type pluginType() const = 0;
    virtual QStringList compatiblePlugins() const = 0;
    virtual QString compatibilityString() const = 0;
    virtual QVariant getProperty(const QString& name) const = 0;
    virtual QVariant getProperty(const QString& name, const QVariant& fallback) const = 0;
    virtual QStringList getFunctions() const = 0;
    virtual QString getFunctionDescription(const QString& name) const = 0;
    virtual QVariantList getCommandParameters(const QString& name) const = 0;
    virtual void setMainConfig(const QVariantMap& config) = 0;
    virtual QVariant getInMainConfig(const QString& key) const = 0;
    virtual QVariant getInPluginConfig(const QString& key) const = 0;
    virtual QString getDebugIdentification() const = 0;
    virtual QVariantMap getMainConfig() const = 0;
    virtual void setInPluginConfig(const QString& key, const QVariant& value) = 0;
    virtual void setInMainConfig(const QString& key, const QVariant& value) = 0;
};
