#pragma once

#include "scripted_command.h"

#include <plugin_management/d_abstract_plugin.h>

/// A plugin whose commands follow scripts.
class ScriptedPlugin : public DAbstractPlugin
{
    Q_OBJECT
    Q_DISABLE_COPY(ScriptedPlugin)

public:
    using Scripts = QVector<std::shared_ptr<CommandScript>>;

    explicit ScriptedPlugin(const Scripts& scripts = {}, const QUuid& objectUuid = QUuid());
    ~ScriptedPlugin() override;

    static QUuid uuid();

    void initPluginCommands() override;
    IPlugin* createInstance(const QUuid& objectUuid) const override;
    const char* pluginSubTypeName() const override;

private:
    Scripts m_scripts;
};
