#pragma once

#include <plugin_management/d_command_description.h>
#include <plugin_management/d_data_storage.h>
#include <plugin_management/i_plugin.h>

class DAbstractCommand;

/// Base of all plugins: keeps the identity, the properties and the declared commands.
class PLUGIN_MANAGEMENT_EXPORT DAbstractPlugin : public DDataStorage, public IPlugin
{
    Q_OBJECT
    Q_DISABLE_COPY(DAbstractPlugin)

public:
    /// Makes a plugin object of the given identity that serves the object objectUuid (null for a prototype).
    /// standalone marks a plugin that needs no configured object; it is stored as the property "standalone".
    DAbstractPlugin(const QUuid& pluginUuid, const QString& pluginName, IPlugin::Type type,
                    unsigned long long version, const QUuid& objectUuid, QObject* parent, bool standalone);
    ~DAbstractPlugin() override;

    // The slots of the virtual table, in their fixed order.
    /// Declares the plugin's commands and emits sigCommandsInitDone.
    virtual void initPluginCommands() = 0;
    IPlugin* createInstance(const QUuid& objectUuid) const override = 0;
    const char* pluginSubTypeName() const override = 0;
    QUuid objectUuid() const override;
    QString getName() const override;
    QUuid pluginUuid() const override;
    QString pluginName() const override;
    unsigned long long pluginVersion() const override;
    IPlugin::Type pluginType() const override;
    QStringList compatiblePlugins() const override;
    QString compatibilityString() const override;
    QVariant getProperty(const QString& name) const override;
    QVariant getProperty(const QString& name, const QVariant& fallback) const override;
    QStringList getFunctions() const override;
    QString getFunctionDescription(const QString& name) const override;
    QVariantList getCommandParameters(const QString& name) const override;
    void setMainConfig(const QVariantMap& config) override;
    QVariant getInMainConfig(const QString& key) const override;
    QVariant getInPluginConfig(const QString& key) const override;
    QString getDebugIdentification() const override;
    QVariantMap getMainConfig() const override;
    void setInPluginConfig(const QString& key, const QVariant& value) override;
    void setInMainConfig(const QString& key, const QVariant& value) override;

    /// Stores the plugin property name. A property that was stored with readOnly keeps its first value.
    void setProperty(const QString& name, const QVariant& value, bool readOnly);

    /// Records prototype under its command name; a second one of that name takes the first one's place. The
    /// caller keeps the ownership (prototypes are children of the plugin). A null pointer is ignored.
    void declareInstructionCommand(DAbstractCommand* prototype);
    /// Names of the declared commands, in the order of their declaration.
    QStringList commandNames() const;
    /// The prototype of the command name; null when there is none.
    DAbstractCommand* command(const QString& name) const;

Q_SIGNALS:
    /// The plugin's command list is complete.
    void sigCommandsInitDone(const QUuid& objectUuid, const QStringList& commandNames);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
