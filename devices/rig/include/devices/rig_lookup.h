#pragma once

#include <devices/broker_address.h>

#include <optional>

/// The description that the rig of address gives of itself. Waits for it in an event loop, some seconds at
/// most. Returns nothing, and in problem why, when there is none.
std::optional<QByteArray> describedRig(const BrokerAddress& address, const BrokerAccess& access,
                                       DWording* problem);
