#pragma once

#include "observer.h"
#include "p_tool_gpio.h"

/// The plugin with its six commands, and "survey", each telling the observer what is done to it.
class WatchedPlugin : public PToolGpio
{
    Q_OBJECT
    Q_DISABLE_COPY(WatchedPlugin)

public:
    explicit WatchedPlugin(Observer* observer, const QUuid& objectUuid = QUuid());
    ~WatchedPlugin() override;

    void initPluginCommands() override;
    IPlugin* createInstance(const QUuid& objectUuid) const override;

private:
    Observer* m_observer;
};
