#include "order_status.h"

#include "../bench/exit_status.h"

#include <plugin_management/d_device.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>

int exitStatusOf(const DOrder& order)
{
    if (order.isSuccessful()) {
        return ExitSuccess;
    }
    const DDevice* device = order.tool() != nullptr ? order.tool()->device() : nullptr;
    const bool lost =
        device != nullptr && !device->isConnected() && order.reason() == device->connectionProblem();
    return lost ? ExitDeviceUnreachable : ExitOrderFailed;
}
