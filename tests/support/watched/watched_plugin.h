#pragma once

#include "command_observer.h"

#include <plugin_management/d_abstract_plugin.h>

/// The plugin's six commands, and "survey", each telling the observer what is done to it. The plugin itself
/// registers its QML types anew with each instance, which Qt keeps for ever.
class WatchedPlugin : public DAbstractPlugin
{
    Q_OBJECT
    Q_DISABLE_COPY(WatchedPlugin)

public:
    explicit WatchedPlugin(CommandObserver* observer, const QUuid& objectUuid = QUuid());
    ~WatchedPlugin() override;

    void initPluginCommands() override;
    IPlugin* createInstance(const QUuid& objectUuid) const override;
    const char* pluginSubTypeName() const override;

private:
    CommandObserver* m_observer;
};
