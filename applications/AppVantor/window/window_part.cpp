#include "window_part.h"

#include "bench_window.h"
#include "picture.h"
#include "texts.h"

#include <process/unix_signals.h>

#include <QDir>
#include <QGuiApplication>
#include <QOpenGLContext>
#include <QQuickWindow>
#include <QTimer>

namespace {

bool isSet(const char* variable)
{
    return !qEnvironmentVariableIsEmpty(variable);
}

bool hasGraphicsCard()
{
    return !QDir(QStringLiteral("/dev/dri"))
                .entryList({QStringLiteral("renderD*")}, QDir::System | QDir::Files)
                .isEmpty();
}

/// Before the first window is made.
void chooseRenderer()
{
    if (!isSet("QT_QUICK_BACKEND") && !QOpenGLContext().create()) {
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software); // the display offers no other
    }
}

/// Returns the exit status.
int runUntilClosed(const WindowOptions& options)
{
    const UnixSignals unixSignals;
    QObject::connect(&unixSignals, &UnixSignals::interrupted, qGuiApp, &QGuiApplication::quit);
    if (options.runMs) {
        QTimer::singleShot(*options.runMs, qGuiApp, &QGuiApplication::quit);
    }
    return QGuiApplication::exec();
}

QString prepare(const WindowOptions& options)
{
    const bool picture = !options.screenshotFile.isEmpty();
    if (!picture && !isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY") && !isSet("QT_QPA_PLATFORM")) {
        return QStringLiteral("there is no display to open a window on (a screenshot needs none)");
    }
    if (!picture) {
        QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling); // a picture has no screen to scale for
    } else if (!isSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    // Qt's own renderer costs a fraction of what a graphics card that is only imitated does.
    if (picture || (!isSet("QT_QUICK_BACKEND") && !hasGraphicsCard())) {
        qputenv("QT_QUICK_BACKEND", "software");
    }
    if (options.scale > 0) {
        qputenv("QT_SCALE_FACTOR", QByteArray::number(options.scale));
    }
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    return QString();
}

std::unique_ptr<QCoreApplication> makeApplication(int& argc, char** argv)
{
    return std::make_unique<QGuiApplication>(argc, argv);
}

int showWindow(BenchSource& source, const WindowOptions& options)
{
    installTexts(options.locale);
    if (!options.screenshotFile.isEmpty()) {
        BenchScene scene(source.bench(), options.theme);
        return takePicture(scene, options);
    }
    chooseRenderer();
    BenchWindow window(&source, options);
    QObject::connect(&window, &BenchWindow::closeConfirmed, qGuiApp, &QGuiApplication::quit);
    window.show();
    return runUntilClosed(options);
}

int showPanel(DTool& tool, const WindowOptions& options)
{
    installTexts(options.locale);
    PanelScene scene(&tool, options.theme);
    if (!options.screenshotFile.isEmpty()) {
        return takePicture(scene, options);
    }
    chooseRenderer();
    QQuickWindow window;
    window.setTitle(tool.objectName());
    fitWindow(window, options);
    scene.putInto(window);
    window.show();
    return runUntilClosed(options);
}

} // namespace

const WindowPart* appvantorWindowPart()
{
    static constexpr WindowPart part = {prepare, makeApplication, showWindow, showPanel};
    return &part;
}
