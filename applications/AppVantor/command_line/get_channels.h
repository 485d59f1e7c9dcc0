#pragma once

#include "options.h"

#include <process/output.h>

class DTool;

/// Reads the channels that the words of options name, and writes their levels as `set` takes them. Returns
/// the exit status.
int getChannels(DTool* tool, const Options& options, Output* output);
