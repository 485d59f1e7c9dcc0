#include "bench.h"

#include <plugin_management/d_plugin_loader.h>

namespace {

std::unique_ptr<LineDevice> makeDevice(const SimulatedBoardSetup& setup, DScheduler* scheduler,
                                       DevicePlace place)
{
    return makeSimulatedBoard(setup, scheduler, place);
}

std::unique_ptr<LineDevice> makeDevice(const GpioChipSetup& setup, DScheduler* scheduler, DevicePlace place)
{
    return makeGpioChipDevice(setup, scheduler, place);
}

std::unique_ptr<LineDevice> makeDevice(const RigDeviceSetup& setup, DScheduler* scheduler, DevicePlace place)
{
    return makeRigDevice(setup, scheduler, place);
}

} // namespace

std::unique_ptr<Bench> Bench::make(const BenchConfiguration& configuration, DevicePlace place,
                                   DWording* problem)
{
    std::unique_ptr<Bench> bench(new Bench);
    bench->m_device =
        std::visit([&](const auto& setup) { return makeDevice(setup, &bench->m_scheduler, place); },
                   configuration.device);
    for (const BenchConfiguration::Tool& tool : configuration.tools) {
        const DPluginLoader loader(tool.pluginFile);
        if (loader.prototype() == nullptr) {
            *problem = loader.error();
            return nullptr;
        }
        bench->m_tools.push_back(
            std::make_unique<DTool>(tool.entry, *loader.prototype(), bench->m_device.get()));
        const DTool& made = *bench->m_tools.back();
        if (made.plugin() == nullptr) {
            *problem = wording(R"(%1: it made no instance that this host can use for the tool "%2")")
                           .arg(tool.pluginFile, made.objectName());
            return nullptr;
        }
    }
    return bench;
}

DTool* Bench::findTool(const QString& name) const
{
    for (const auto& tool : m_tools) {
        if (name.isEmpty() || tool->objectName() == name) {
            return tool.get();
        }
    }
    return nullptr;
}
