#pragma once

#include "window_options.h"

class Bench;
class DTool;

/// Chooses platform, renderer and scale for what options asks for; a picture needs neither display nor
/// graphics card. To be called before the QGuiApplication is made. Returns an empty text, or why no window
/// can be shown.
QString prepareWindow(const WindowOptions& options);

/// Shows the bench window until it is closed, or writes its picture. Needs the QGuiApplication. Returns the
/// exit status of the process; see takePicture.
int showWindow(Bench& bench, const WindowOptions& options);

/// The same with the maintenance page of tool alone.
int showPanel(DTool& tool, const WindowOptions& options);
