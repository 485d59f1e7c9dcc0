#pragma once

#include "bench_configuration.h"
#include "config_object.h"

#include <optional>

/// What kinds of channels the lines of a device can serve.
enum class LineKinds
{
    Any,
    DigitalOnly
};

/// Reads the tools whose channels are linked to these lines, without them to some that are not known. Plugins
/// are named ("p_tool_gpio", found in pluginFolder()) or given as a library file, relative to folder.
QVector<BenchConfiguration::Tool> readTools(const ConfigObject& root,
                                            const std::optional<QVector<DLine>>& lines, LineKinds kinds,
                                            const QString& folder);
