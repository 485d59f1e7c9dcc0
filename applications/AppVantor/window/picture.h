#pragma once

#include "window_options.h"

class Scene;

/// Draws scene by the software renderer, without any window on a screen, into the PNG file that options
/// names: after the time that options gives it, and once its panel has its values. Returns the exit status of
/// the process: 0, 1 when the values did not arrive or the page cannot be shown, or 2 when the file cannot be
/// written; options are told what went wrong.
int takePicture(Scene& scene, const WindowOptions& options);
