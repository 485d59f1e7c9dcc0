#pragma once

#include "config_object.h"

#include <devices/simulated_board.h>

/// Reads the setup of a simulated board.
SimulatedBoardSetup readBoard(const ConfigObject& device);
