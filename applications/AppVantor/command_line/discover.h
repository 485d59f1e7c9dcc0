#pragma once

#include "options.h"

#include <process/output.h>

/// Lists the GPIO chips of this machine and their lines or, for one chip, writes a configuration of its free
/// lines. Returns the exit status.
int discover(const Options& options, Output* output);
