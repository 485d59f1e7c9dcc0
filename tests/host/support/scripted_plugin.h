#pragma once

#include "literals.h"
#include "scripted_command.h"

#include <plugin_management/d_abstract_plugin.h>

/// A plugin whose commands follow scripts.
class ScriptedPlugin : public DAbstractPlugin
{
    Q_OBJECT
    Q_DISABLE_COPY(ScriptedPlugin)

public:
    using Scripts = QVector<std::shared_ptr<CommandScript>>;

    explicit ScriptedPlugin(const Scripts& scripts = {}, const QUuid& objectUuid = QUuid())
        : DAbstractPlugin(uuid(), "Scripted"_s, IPlugin::CeTpTool, 0x0001000200030004, objectUuid, nullptr,
                          false)
        , m_scripts(scripts)
    {}

    static QUuid uuid() { return QUuid("{0b9a9f3e-5d0f-4c52-9a39-6b1d2f0c7a11}"_s); }

    void initPluginCommands() override
    {
        for (const std::shared_ptr<CommandScript>& script : qAsConst(m_scripts)) {
            declareInstructionCommand(new ScriptedCommand(script, {}, this));
        }
        Q_EMIT sigCommandsInitDone(objectUuid(), commandNames());
    }

    IPlugin* createInstance(const QUuid& objectUuid) const override
    {
        return new ScriptedPlugin(m_scripts, objectUuid);
    }
    const char* pluginSubTypeName() const override { return "scripted"; }

private:
    Scripts m_scripts;
};
