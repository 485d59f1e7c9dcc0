#include "scripted_plugin.h"

#include "literals.h"

ScriptedPlugin::ScriptedPlugin(const Scripts& scripts, const QUuid& objectUuid)
    : DAbstractPlugin(uuid(), "Scripted"_s, IPlugin::CeTpTool, 0x0001000200030004, objectUuid, nullptr, false)
    , m_scripts(scripts)
{}

ScriptedPlugin::~ScriptedPlugin() = default;

QUuid ScriptedPlugin::uuid()
{
    return QUuid("{0b9a9f3e-5d0f-4c52-9a39-6b1d2f0c7a11}"_s);
}

void ScriptedPlugin::initPluginCommands()
{
    for (const std::shared_ptr<CommandScript>& script : qAsConst(m_scripts)) {
        declareInstructionCommand(new ScriptedCommand(script, {}, this));
    }
    Q_EMIT sigCommandsInitDone(objectUuid(), commandNames());
}

IPlugin* ScriptedPlugin::createInstance(const QUuid& objectUuid) const
{
    return new ScriptedPlugin(m_scripts, objectUuid);
}

const char* ScriptedPlugin::pluginSubTypeName() const
{
    return "scripted";
}
