#pragma once

#include <plugin_management/d_data_storage.h>
#include <plugin_management/i_plugin.h>

#include <memory>

class DAbstractCommand;
struct PluginRecord;

/// Base of all plugins, with as little open to others as a plugin's class needs. It writes down what the
/// plugin asks of it in its PluginRecord.
class Q_DECL_EXPORT DAbstractPlugin : public DDataStorage, public IPlugin
{
    Q_OBJECT
    Q_DISABLE_COPY(DAbstractPlugin)

protected:
    DAbstractPlugin(const QUuid& pluginUuid, const QString& pluginName, IPlugin::Type type,
                    unsigned long long version, const QUuid& objectUuid, QObject* parent, bool flag);

public:
    ~DAbstractPlugin() override;

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

Q_SIGNALS:
    void sigCommandsInitDone(const QUuid& objectUuid, const QStringList& commandNames);

protected:
    void setProperty(const QString& name, const QVariant& value, bool flag);
    void declareInstructionCommand(DAbstractCommand* prototype);
    QStringList commandNames() const;

private:
    friend PluginRecord& recordOf(const DAbstractPlugin& plugin);

    std::unique_ptr<PluginRecord> m_record;
};
