#pragma once

#include "options.h"

#include <devices/broker_address.h>

/// A broker, and what it asks of who comes to it.
struct BrokerPlace
{
    BrokerAddress address; ///< with the rig that is meant, if one is
    BrokerAccess access;
};

/// The broker that the options or the environment name. Returns nothing, and in problem what is wrong or
/// missing, when there is none.
std::optional<BrokerPlace> brokerOf(const Options& options, DWording* problem);

/// The rig on a broker that a subcommand is to work on in the place of a configuration; empty when a broker
/// is named without one. The environment counts where the options name no configuration. Returns nothing when
/// no rig is meant.
std::optional<QString> rigMeant(const Options& options);
