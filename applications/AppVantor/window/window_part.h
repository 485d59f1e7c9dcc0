#pragma once

#include "window_options.h"

#include <memory>

class BenchSource;
class DTool;
class QCoreApplication;

/// What the program asks of its window. The window is a library of its own, which only a process that opens
/// one loads: what draws takes longer to load than an order takes.
struct WindowPart
{
    /// Chooses platform, renderer and scale for what options asks for; a picture needs neither display nor
    /// graphics card. To be called before the application is made. Returns an empty text, or why no window
    /// can be shown.
    QString (*prepare)(const WindowOptions& options);

    /// Makes the application of a process with windows. argc and argv are those of main and must outlive it.
    std::unique_ptr<QCoreApplication> (*makeApplication)(int& argc, char** argv);

    /// Shows the bench window until it is closed, with the bench of source that is in operation and those
    /// that the user has it make, or writes its picture. Needs the application. Returns the exit status of
    /// the process; see takePicture.
    int (*showWindow)(BenchSource& source, const WindowOptions& options);

    /// The same with the maintenance page of tool alone.
    int (*showPanel)(DTool& tool, const WindowOptions& options);
};

/// The one function that the library shows.
extern "C" Q_DECL_EXPORT const WindowPart* appvantorWindowPart();
