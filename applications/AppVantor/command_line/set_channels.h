#pragma once

#include "options.h"

#include <process/output.h>

#include <vector>

class DTool;

/// Sets the channels as the words of options say, all at once. Returns the exit status.
int setChannels(DTool* tool, const Options& options, Output* output);

/// Switches off everything that tools drive. Returns the exit status.
int switchOff(const std::vector<DTool*>& tools, Output* output);
