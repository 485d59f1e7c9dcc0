#include "failure_status.h"

int exitStatusOf(const DFailure& failure)
{
    switch (failure.kind) {
    case DFailure::Kind::None:
        return ExitSuccess;
    case DFailure::Kind::WrongInvocation:
        return ExitWrongUsage;
    case DFailure::Kind::DeviceUnreachable:
        return ExitDeviceUnreachable;
    case DFailure::Kind::RefusedByCommand:
    case DFailure::Kind::NothingSent:
    case DFailure::Kind::ReplyRejected:
    case DFailure::Kind::RefusedByDevice:
    case DFailure::Kind::TimedOut:
    case DFailure::Kind::Stopped:
    case DFailure::Kind::ToolClosed:
    case DFailure::Kind::Count:
        break;
    }
    return ExitOrderFailed;
}
