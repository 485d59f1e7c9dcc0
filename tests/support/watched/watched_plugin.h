#pragma once

#include "command_observer.h"
#include "d_cmd_getValue.h"
#include "d_cmd_initGpio.h"
#include "d_cmd_listenEvents.h"
#include "d_cmd_listenToAll.h"
#include "d_cmd_setValue.h"
#include "d_cmd_switchValue.h"
#include "survey_command.h"
#include "watched_command.h"

#include <plugin_management/d_abstract_plugin.h>

/// The plugin's six commands, and "survey", each telling the observer what is done to it. The plugin itself
/// registers its QML types anew with each instance, which Qt keeps for ever.
class WatchedPlugin : public DAbstractPlugin
{
    Q_OBJECT
    Q_DISABLE_COPY(WatchedPlugin)

public:
    explicit WatchedPlugin(CommandObserver* observer, const QUuid& objectUuid = QUuid())
        : DAbstractPlugin(QUuid(), QStringLiteral("Watched"), IPlugin::CeTpTool, 0, objectUuid, nullptr,
                          false)
        , m_observer(observer)
    {}

    void initPluginCommands() override
    {
        declareInstructionCommand(new Watched<DCmdSetValue>(m_observer, {}, this));
        declareInstructionCommand(new Watched<DCmdSwitchValue>(m_observer, {}, this));
        declareInstructionCommand(new Watched<DCmdGetValue>(m_observer, {}, this));
        declareInstructionCommand(new Watched<DCmdListenEvents>(m_observer, {}, this));
        declareInstructionCommand(new Watched<DCmdInitGpio>(m_observer, {}, this));
        declareInstructionCommand(new Watched<DCmdListenToAll>(m_observer, {}, this));
        declareInstructionCommand(new Watched<SurveyCommand>(m_observer, {}, this));
    }

    IPlugin* createInstance(const QUuid& objectUuid) const override
    {
        return new WatchedPlugin(m_observer, objectUuid);
    }
    const char* pluginSubTypeName() const override { return "watched"; }

private:
    CommandObserver* m_observer;
};
