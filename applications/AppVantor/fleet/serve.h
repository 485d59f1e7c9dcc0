#pragma once

#include "rig_server.h"

#include <process/output.h>

/// Tells when a server has reached its broker, and waits until a signal, or another server, ends it. Returns
/// the exit status.
int waitForEnd(const RigServer& server, Output* output);
