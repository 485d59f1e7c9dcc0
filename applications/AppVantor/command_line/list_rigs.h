#pragma once

#include "options.h"

#include <process/output.h>

/// Lists the rigs on the broker of the options. Returns the exit status.
int listRigs(const Options& options, Output* output);
