#include "installation.h"

#include <QDir>
#include <QFileInfo>

namespace {

/// A folder, given as it is seen from that of the program.
QString folder(const QString& installed, const QString& built)
{
    // The window asks before there is a QCoreApplication that could tell this.
    const QDir program(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath());
    const bool isInstalled = program.exists(QStringLiteral(INSTALLED_LIBRARIES));
    return QDir::cleanPath(program.filePath(isInstalled ? installed : built));
}

} // namespace

QString pluginFolder()
{
    return folder(QStringLiteral(INSTALLED_PLUGINS), QStringLiteral("../plugins"));
}

QString libraryFolder()
{
    return folder(QStringLiteral(INSTALLED_LIBRARIES), QStringLiteral("../lib"));
}
