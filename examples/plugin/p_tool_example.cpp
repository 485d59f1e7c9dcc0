#include "p_tool_example.h"

#include "d_cmd_switchOn.h"

#include <utilities/d_version.h>

PToolExample::PToolExample(const QUuid& objectUuid, QObject* parent)
    : DAbstractPlugin(QUuid(QStringLiteral("{5f1c1f6e-6a0b-4a3a-9f53-0f2f6d5f7a10}")),
                      QStringLiteral("Example"), IPlugin::CeTpTool,
                      versionFromString(QStringLiteral("1.0"), nullptr, QLatin1Char('.')), objectUuid, parent,
                      false)
{}

void PToolExample::initPluginCommands()
{
    declareInstructionCommand(new DCmdSwitchOn(this));
    Q_EMIT sigCommandsInitDone(objectUuid(), commandNames());
}

IPlugin* PToolExample::createInstance(const QUuid& objectUuid) const
{
    return new PToolExample(objectUuid);
}

const char* PToolExample::pluginSubTypeName() const
{
    return "example";
}
