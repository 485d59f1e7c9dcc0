#pragma once

#include "options.h"

#include <process/output.h>

class DTool;

/// Runs one order: the words of options name it. Returns the exit status.
int runOrder(DTool* tool, const Options& options, Output* output);
