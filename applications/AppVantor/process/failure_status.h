#pragma once

#include "exit_status.h"

#include <plugin_management/d_failure.h>

/// The exit status of the process that a failure stands for.
int exitStatusOf(const DFailure& failure);
