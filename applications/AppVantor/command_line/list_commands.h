#pragma once

#include <process/output.h>

class DTool;
struct DCommandDescription;

/// A command of the tool as its plugin declares it.
Json commandJson(const DTool& tool, const DCommandDescription& command);

/// Writes the catalogue of the tool's commands as its plugin declares it. Returns the exit status.
int listCommands(const DTool& tool, Output* output);
