#pragma once

#include <process/output.h>

/// Tells the version of the bench and of Qt, and which plugins are found where. A plugin that cannot be
/// loaded is listed with the reason. Returns the exit status.
int tellAbout(Output* output);
