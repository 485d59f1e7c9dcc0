#pragma once

#include "config_object.h"

#include <devices/gpio_chip_device.h>

/// Reads the lines of GPIO chips.
GpioChipSetup readGpioLines(const ConfigObject& device);
