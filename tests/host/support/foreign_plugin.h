#pragma once

#include <plugin_management/i_plugin.h>

/// An instance of another host's kind: it has the interface of a plugin, but not the base of this host's.
class ForeignPlugin : public IPlugin
{
public:
    /// Sets *isGone when it is deleted.
    explicit ForeignPlugin(bool* isGone)
        : m_isGone(isGone)
    {}
    ~ForeignPlugin() override { *m_isGone = true; }

    IPlugin* createInstance(const QUuid&) const override { return nullptr; }
    const char* pluginSubTypeName() const override { return ""; }
    QUuid objectUuid() const override { return {}; }
    QString getName() const override { return {}; }
    QUuid pluginUuid() const override { return {}; }
    QString pluginName() const override { return {}; }
    unsigned long long pluginVersion() const override { return 0; }
    Type pluginType() const override { return CeTpUnknown; }
    QStringList compatiblePlugins() const override { return {}; }
    QString compatibilityString() const override { return {}; }
    QVariant getProperty(const QString&) const override { return {}; }
    QVariant getProperty(const QString&, const QVariant& fallback) const override { return fallback; }
    QStringList getFunctions() const override { return {}; }
    QString getFunctionDescription(const QString&) const override { return {}; }
    QVariantList getCommandParameters(const QString&) const override { return {}; }
    void setMainConfig(const QVariantMap&) override {}
    QVariant getInMainConfig(const QString&) const override { return {}; }
    QVariant getInPluginConfig(const QString&) const override { return {}; }
    QString getDebugIdentification() const override { return {}; }
    QVariantMap getMainConfig() const override { return {}; }
    void setInPluginConfig(const QString&, const QVariant&) override {}
    void setInMainConfig(const QString&, const QVariant&) override {}

private:
    Q_DISABLE_COPY(ForeignPlugin)

    bool* m_isGone;
};
