#pragma once

#include <devices/broker_address.h>
#include <devices/line_device.h>

/// Which lines of a rig on a broker are the lines of a device.
struct RigDeviceSetup
{
    struct Line
    {
        DLine line;
        QString there; ///< what the rig calls it
    };

    BrokerAddress broker; ///< with the name of the rig
    BrokerAccess access;
    QVector<Line> lines;
};

/// The lines of such a device.
QVector<DLine> rigLines(const RigDeviceSetup& setup);

/// Who gives orders from this process, as leases of rigs know them: "USER@MACHINE".
QString thisHolder();

/// Makes the device behind its front, closed. Requests become orders of the rig; levels are told with the
/// times at which they changed there. What was missed while the broker was away is asked for afterwards; a
/// rig that is lost, or a broker that is away for more than 5 s, is unreachable until it is back.
std::unique_ptr<LineDevice> makeRigDevice(const RigDeviceSetup& setup, DScheduler* scheduler,
                                          DevicePlace place);
