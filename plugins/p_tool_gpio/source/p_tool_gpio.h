#pragma once

#include <plugin_management/d_abstract_plugin.h>

/// The plugin: control of the general-purpose inputs and outputs of a device.
class PToolGpio : public DAbstractPlugin
{
    Q_OBJECT
    Q_DISABLE_COPY(PToolGpio)
    Q_PLUGIN_METADATA(IID "fr.velt.rd.tav.PToolGpio")

public:
    /// Makes an instance that serves the object objectUuid (null for the prototype), child of parent.
    explicit PToolGpio(const QUuid& objectUuid = QUuid(), QObject* parent = nullptr);
    ~PToolGpio() override;

    static QUuid getPluginId();
    static const char* getPluginName();
    static IPlugin::Type getPluginType();

    /// Creates and declares the prototypes of the six commands and emits sigCommandsInitDone.
    void initPluginCommands() override;
    IPlugin* createInstance(const QUuid& objectUuid) const override;
    const char* pluginSubTypeName() const override;
};
