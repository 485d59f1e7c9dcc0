#include "watched_plugin.h"

#include "watched_command.h"

#include <d_cmd_getValue.h>
#include <d_cmd_initGpio.h>
#include <d_cmd_listenEvents.h>
#include <d_cmd_listenToAll.h>
#include <d_cmd_setValue.h>
#include <d_cmd_switchValue.h>

WatchedPlugin::WatchedPlugin(const QUuid& objectUuid)
    : DAbstractPlugin(QUuid(), QStringLiteral("Watched"), IPlugin::CeTpTool, 0, objectUuid, nullptr, false)
{}

WatchedPlugin::~WatchedPlugin() = default;

void WatchedPlugin::initPluginCommands()
{
    declareInstructionCommand(new Watched<DCmdSetValue>({}, this));
    declareInstructionCommand(new Watched<DCmdSwitchValue>({}, this));
    declareInstructionCommand(new Watched<DCmdGetValue>({}, this));
    declareInstructionCommand(new Watched<DCmdListenEvents>({}, this));
    declareInstructionCommand(new Watched<DCmdInitGpio>({}, this));
    declareInstructionCommand(new Watched<DCmdListenToAll>({}, this));
}

IPlugin* WatchedPlugin::createInstance(const QUuid& objectUuid) const
{
    return new WatchedPlugin(objectUuid);
}

const char* WatchedPlugin::pluginSubTypeName() const
{
    return "watched";
}
