#pragma once

#include <process/output.h>

class DTool;

/// Writes the catalogue of the tool's commands as its plugin declares it. Returns the exit status.
int listCommands(const DTool& tool, Output* output);
