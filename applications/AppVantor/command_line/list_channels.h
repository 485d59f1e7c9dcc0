#pragma once

#include <process/output.h>

class DTool;

/// Writes the tool's channels with type, direction, link, visibility and present value, which is read with
/// the command "getValue". Returns the exit status.
int listChannels(DTool* tool, Output* output);
