#include <plugin_management/d_abstract_plugin.h>

#include "records.h"

#include <plugin_management/d_abstract_command.h>

PluginRecord& recordOf(const DAbstractPlugin& plugin)
{
    return *plugin.m_record;
}

DDataStorage::DDataStorage(const QString& name, QObject* parent)
    : DObject(name, parent)
{}

DDataStorage::~DDataStorage() = default;

DAbstractPlugin::DAbstractPlugin(const QUuid& pluginUuid, const QString& pluginName, IPlugin::Type type,
                                 unsigned long long version, const QUuid& objectUuid, QObject* parent,
                                 bool flag)
    : DDataStorage(pluginName, parent)
    , m_record(new PluginRecord{pluginUuid, pluginName, type, version, objectUuid, parent, flag, {}, {}})
{
    noteCall(QStringLiteral("construct the plugin"));
}

DAbstractPlugin::~DAbstractPlugin()
{
    noteCall(QStringLiteral("destroy the plugin"));
}

QUuid DAbstractPlugin::objectUuid() const
{
    return m_record->objectUuid;
}

QString DAbstractPlugin::getName() const
{
    return m_record->pluginName;
}

QUuid DAbstractPlugin::pluginUuid() const
{
    return m_record->pluginUuid;
}

QString DAbstractPlugin::pluginName() const
{
    return m_record->pluginName;
}

unsigned long long DAbstractPlugin::pluginVersion() const
{
    return m_record->version;
}

IPlugin::Type DAbstractPlugin::pluginType() const
{
    return m_record->type;
}

QStringList DAbstractPlugin::compatiblePlugins() const
{
    return {};
}

QString DAbstractPlugin::compatibilityString() const
{
    return {};
}

QVariant DAbstractPlugin::getProperty(const QString& name) const
{
    return getProperty(name, QVariant());
}

QVariant DAbstractPlugin::getProperty(const QString& name, const QVariant& fallback) const
{
    for (const PluginRecord::Property& property : qAsConst(m_record->properties)) {
        if (property.name == name) {
            return property.value;
        }
    }
    return fallback;
}

QStringList DAbstractPlugin::getFunctions() const
{
    return commandNames();
}

QString DAbstractPlugin::getFunctionDescription(const QString&) const
{
    return {};
}

QVariantList DAbstractPlugin::getCommandParameters(const QString&) const
{
    return {};
}

void DAbstractPlugin::setMainConfig(const QVariantMap&) {}

QVariant DAbstractPlugin::getInMainConfig(const QString&) const
{
    return {};
}

QVariant DAbstractPlugin::getInPluginConfig(const QString&) const
{
    return {};
}

QString DAbstractPlugin::getDebugIdentification() const
{
    return {};
}

QVariantMap DAbstractPlugin::getMainConfig() const
{
    return {};
}

void DAbstractPlugin::setInPluginConfig(const QString&, const QVariant&) {}

void DAbstractPlugin::setInMainConfig(const QString&, const QVariant&) {}

void DAbstractPlugin::setProperty(const QString& name, const QVariant& value, bool flag)
{
    noteCall(QStringLiteral("setProperty ") + name);
    m_record->properties.append({name, value, flag});
}

void DAbstractPlugin::declareInstructionCommand(DAbstractCommand* prototype)
{
    noteCall(QStringLiteral("declareInstructionCommand ") + prototype->commandName());
    m_record->prototypes.append(prototype);
}

QStringList DAbstractPlugin::commandNames() const
{
    QStringList names;
    for (const DAbstractCommand* prototype : qAsConst(m_record->prototypes)) {
        names.append(prototype->commandName());
    }
    return names;
}
