#pragma once

#include "rig_server.h"

#include <process/output.h>

/// Serves the bench on a broker until a signal ends it. Returns the exit status.
int serveBench(const Bench& bench, const RigServerSetup& setup, const RigForms& forms, Output* output);
