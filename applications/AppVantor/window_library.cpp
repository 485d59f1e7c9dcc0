#include "window_library.h"

#include <configuration/installation.h>

#include <QLibrary>

const WindowPart* loadWindow(QString* problem)
{
    const QString file = libraryFolder() + QStringLiteral("/libappvantor_window.so");
    QLibrary library(file);
    // A function that is missing is found now, not when it is called: that would end the process.
    library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    if (!library.load()) {
        *problem = QStringLiteral("the window's part cannot be loaded: %1").arg(library.errorString());
        return nullptr;
    }
    const char* name = "appvantorWindowPart";
    const auto function = reinterpret_cast<decltype(&appvantorWindowPart)>(library.resolve(name));
    if (function == nullptr) {
        *problem = QStringLiteral("the window's part cannot be loaded: %1 has no function \"%2\"")
                       .arg(file, QLatin1String(name));
        return nullptr;
    }
    return function();
}
