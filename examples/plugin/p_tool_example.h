#pragma once

#include <plugin_management/d_abstract_plugin.h>

/// A plugin with one command. The bench finds it by its interface identifier, which ends with the class's
/// name.
class PToolExample : public DAbstractPlugin
{
    Q_OBJECT
    Q_DISABLE_COPY(PToolExample)
    Q_PLUGIN_METADATA(IID "fr.velt.rd.tav.PToolExample")

public:
    explicit PToolExample(const QUuid& objectUuid = QUuid(), QObject* parent = nullptr);

    void initPluginCommands() override;
    IPlugin* createInstance(const QUuid& objectUuid) const override;
    const char* pluginSubTypeName() const override;
};
