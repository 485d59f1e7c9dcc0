#pragma once

#include <window/window_part.h>

/// Loads the window's library. Returns null when that fails, and why in problem.
const WindowPart* loadWindow(QString* problem);
