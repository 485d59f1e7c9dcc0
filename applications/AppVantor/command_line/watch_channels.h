#pragma once

#include "options.h"

#include <process/output.h>

class DTool;

/// Writes the changes of the channels that the words of options name, as they come. Returns the exit status.
int watchChannels(DTool* tool, const Options& options, Output* output);
