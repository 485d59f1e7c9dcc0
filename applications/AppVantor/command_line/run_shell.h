#pragma once

#include "options.h"

#include <process/output.h>

class DTool;

/// True when a person types the lines of a shell with these options, and reads its output.
bool isInteractive(const Options& options);

/// Runs the lines of standard input; on a terminal with a prompt, history and completion. Returns the exit
/// status.
int runShell(DTool* tool, const Options& options, Output* output);
