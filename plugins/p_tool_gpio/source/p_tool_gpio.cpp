#include "p_tool_gpio.h"

#include "be_maintenance_plugin.h"
#include "d_cmd_getValue.h"
#include "d_cmd_initGpio.h"
#include "d_cmd_listenEvents.h"
#include "d_cmd_listenToAll.h"
#include "d_cmd_setValue.h"
#include "d_cmd_switchValue.h"
#include "d_gpio_channel.h"
#include "lifecycle_trace.h"

#include <utilities/d_version.h>

#include <QtQml>

namespace {

constexpr auto c_pluginId = "{78c1adc4-57e9-4b97-bb64-a19f85c099a2}";
constexpr auto c_pluginName = "Tool Gpio";
constexpr auto c_pluginSubTypeName = "gpio";
constexpr int c_toolType = 3;

void registerQmlTypes()
{
    constexpr auto module = "PlgLibToolGpio";
    qmlRegisterType<BeMaintenanceToolGpio>(module, 1, 0, "BeMaintenanceToolGpio");
    qmlRegisterType<DGpioChannel>(module, 1, 0, "DGpioChannel");
}

} // namespace

PToolGpio::PToolGpio(const QUuid& objectUuid, QObject* parent)
    : DAbstractPlugin(getPluginId(), QString::fromLatin1(getPluginName()), getPluginType(),
                      versionFromString(QStringLiteral("1.0"), nullptr, QLatin1Char('.')), objectUuid, parent,
                      false)
{
    setProperty(QStringLiteral("toolType"), QVariant(c_toolType), false);
    registerQmlTypes();
    setProperty(QStringLiteral("typeName"), QVariant(QString::fromLatin1(c_pluginSubTypeName)), false);
    traceLifecycle(*this, DAbstractPlugin::objectUuid(), DAbstractPlugin::pluginName());
}

PToolGpio::~PToolGpio()
{
    traceLifecycle(*this, DAbstractPlugin::objectUuid(), DAbstractPlugin::pluginName());
}

QUuid PToolGpio::getPluginId()
{
    return QUuid(QLatin1String(c_pluginId));
}

const char* PToolGpio::getPluginName()
{
    return c_pluginName;
}

IPlugin::Type PToolGpio::getPluginType()
{
    return static_cast<IPlugin::Type>(0x546F6F6C); // "Tool"
}

void PToolGpio::initPluginCommands()
{
    declareInstructionCommand(new DCmdSetValue(this));
    declareInstructionCommand(new DCmdSwitchValue(this));
    declareInstructionCommand(new DCmdGetValue(this));
    declareInstructionCommand(new DCmdListenEvents(this));
    declareInstructionCommand(new DCmdInitGpio(this));
    declareInstructionCommand(new DCmdListenToAll(this));
    const QStringList names = commandNames();
    Q_EMIT sigCommandsInitDone(objectUuid(), names);
}

IPlugin* PToolGpio::createInstance(const QUuid& objectUuid) const
{
    return new PToolGpio(objectUuid);
}

const char* PToolGpio::pluginSubTypeName() const
{
    return c_pluginSubTypeName;
}
