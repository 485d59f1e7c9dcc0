#pragma once

#include "options.h"

#include <process/output.h>

class DTool;

/// Sets the channels as the words of options say, all at once. Returns the exit status.
int setChannels(DTool* tool, const Options& options, Output* output);

/// Switches off everything that tool drives. Returns the exit status.
int switchOff(DTool* tool, Output* output);
