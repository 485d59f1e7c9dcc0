#include "watched_plugin.h"

#include "d_cmd_getValue.h"
#include "d_cmd_initGpio.h"
#include "d_cmd_listenEvents.h"
#include "d_cmd_listenToAll.h"
#include "d_cmd_setValue.h"
#include "d_cmd_switchValue.h"
#include "survey_command.h"
#include "watched_command.h"

WatchedPlugin::WatchedPlugin(CommandObserver* observer, const QUuid& objectUuid)
    : DAbstractPlugin(QUuid(), QStringLiteral("Watched"), IPlugin::CeTpTool, 0, objectUuid, nullptr, false)
    , m_observer(observer)
{}

WatchedPlugin::~WatchedPlugin() = default;

void WatchedPlugin::initPluginCommands()
{
    declareInstructionCommand(new Watched<DCmdSetValue>(m_observer, {}, this));
    declareInstructionCommand(new Watched<DCmdSwitchValue>(m_observer, {}, this));
    declareInstructionCommand(new Watched<DCmdGetValue>(m_observer, {}, this));
    declareInstructionCommand(new Watched<DCmdListenEvents>(m_observer, {}, this));
    declareInstructionCommand(new Watched<DCmdInitGpio>(m_observer, {}, this));
    declareInstructionCommand(new Watched<DCmdListenToAll>(m_observer, {}, this));
    declareInstructionCommand(new Watched<SurveyCommand>(m_observer, {}, this));
}

IPlugin* WatchedPlugin::createInstance(const QUuid& objectUuid) const
{
    return new WatchedPlugin(m_observer, objectUuid);
}

const char* WatchedPlugin::pluginSubTypeName() const
{
    return "watched";
}
