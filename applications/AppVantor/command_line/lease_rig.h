#pragma once

#include "options.h"

#include <process/output.h>

/// Keeps the rig that the words name for this user, until a signal or the end of the time; whoever is lost
/// meanwhile gives it back. Returns the exit status.
int leaseRig(const Options& options, Output* output);

/// Gives the rig that the words name back. Returns the exit status.
int releaseRig(const Options& options, Output* output);
