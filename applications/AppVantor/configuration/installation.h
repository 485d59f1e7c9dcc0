#pragma once

#include <QString>

/// Where the parts of the bench are that it loads: its build tree knows them as "lib" and "plugins", an
/// installed bench beside itself below the same prefix, wherever that is.

/// The folder of the plugins that a configuration names without a path.
QString pluginFolder();

/// The folder of the bench's own libraries.
QString libraryFolder();
