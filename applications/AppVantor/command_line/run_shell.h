#pragma once

#include "options.h"
#include "output.h"

class DTool;

/// Carries out the lines of standard input; on a terminal with a prompt, history and completion. Returns the
/// exit status.
int runShell(DTool* tool, const Options& options, Output* output);
