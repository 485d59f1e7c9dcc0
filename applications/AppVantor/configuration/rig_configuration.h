#pragma once

#include "config_object.h"

#include <devices/rig_device.h>

/// Reads which lines of a rig on a broker the device has; files are named relative to folder.
RigDeviceSetup readRigLines(const ConfigObject& device, const QString& folder);
