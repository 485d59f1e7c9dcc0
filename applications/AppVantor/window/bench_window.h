#pragma once

#include "window_options.h"

class Bench;
class DTool;

/// True when a window can be opened: there is a display, or the environment names a platform to use.
bool hasDisplay();

/// Chooses platform, renderer and scale for what options asks for; a picture needs neither display nor
/// graphics card. To be called before the QGuiApplication is made. Returns an empty text, or why no window
/// can be shown.
QString prepareWindow(const WindowOptions& options);

/// Shows the bench window until it is closed, or writes its picture. Needs the QGuiApplication. Returns the
/// exit status of the process: 0, 1 when values did not arrive or the page cannot be shown, or 2 when the
/// picture cannot be written; what went wrong stands on standard error.
int showWindow(Bench& bench, const WindowOptions& options);

/// The same with the maintenance page of tool alone.
int showPanel(Bench& bench, DTool& tool, const WindowOptions& options);
