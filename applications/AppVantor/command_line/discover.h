#pragma once

#include "options.h"

#include <process/output.h>

/// Lists the GPIO chips of this machine and their lines, and goes on to tell what changes, if asked to; or,
/// for one chip, writes a configuration of its free lines. Returns the exit status.
int discover(const Options& options, Output* output);
