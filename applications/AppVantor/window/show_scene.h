#pragma once

#include "window_options.h"

class Scene;

/// Installs the texts and settles the renderer; before the scene is made.
void prepareScene(const WindowOptions& options);

/// Opens a window with scene until it is closed, or writes the picture that options asks for. Returns the
/// exit status of the process.
int showScene(Scene& scene, const QString& title, const WindowOptions& options);
