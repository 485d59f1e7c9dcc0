#pragma once

/// What the process ends with.
enum ExitStatus
{
    ExitSuccess = 0,
    ExitOrderFailed = 1,
    ExitWrongUsage = 2,
    ExitDeviceUnreachable = 3,
};
