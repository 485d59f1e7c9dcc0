#pragma once

/// What the process ends with.
enum ExitStatus
{
    ExitSuccess = 0,
    ExitOrderFailed = 1,
    ExitWrongUsage = 2,
    ExitDeviceUnreachable = 3,
    ExitReplaced = 4,     ///< another bench serves the rig now
    ExitReaderGone = 141, ///< what a shell makes of a process that SIGPIPE ended
};
