#pragma once

#include "bench_configuration.h"

#include <devices/line_device.h>
#include <plugin_management/d_scheduler.h>
#include <plugin_management/d_tool.h>

#include <memory>
#include <vector>

/// A bench in operation: the device, and the tools with their plugins.
class Bench
{
public:
    /// Builds what configuration describes. Returns null, and says in problem why, when a plugin cannot be
    /// loaded or makes no instance.
    static std::unique_ptr<Bench> make(const BenchConfiguration& configuration, DevicePlace place,
                                       DWording* problem);

    LineDevice& device() const { return *m_device; }
    /// The tools; at least one.
    const std::vector<std::unique_ptr<DTool>>& tools() const { return m_tools; }
    /// The tool that is called so, or the first one without a name; null when there is none.
    DTool* findTool(const QString& name) const;

private:
    Bench() = default;

    // The tools go first, then the device, then its clock.
    DSteadyScheduler m_scheduler;
    std::unique_ptr<LineDevice> m_device;
    std::vector<std::unique_ptr<DTool>> m_tools;
};
