#include "bench_window.h"

#include <QCoreApplication>
#include <QGuiApplication>

namespace {

bool isSet(const char* variable)
{
    return !qEnvironmentVariableIsEmpty(variable);
}

} // namespace

bool hasDisplay()
{
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
}

QString prepareWindow(const WindowOptions& options)
{
    const bool picture = !options.screenshotFile.isEmpty();
    if (!picture && !hasDisplay()) {
        return QStringLiteral("there is no display to open a window on (a screenshot needs none)");
    }
    if (picture) {
        if (!isSet("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        qputenv("QT_QUICK_BACKEND", "software");
    } else {
        QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling); // a picture has no screen to scale for
    }
    if (options.scale > 0) {
        qputenv("QT_SCALE_FACTOR", QByteArray::number(options.scale));
    }
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    return QString();
}
