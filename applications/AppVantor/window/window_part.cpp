#include "window_part.h"
#include "close_guard.h"
#include "picture.h"
#include "scene.h"
#include "texts.h"
#include "window_memory.h"

#include <configuration/bench.h>
#include <process/unix_signals.h>

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QOpenGLContext>
#include <QQuickWindow>
#include <QScreen>
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

QVector<DTool*> toolsOf(const Bench& bench)
{
    QVector<DTool*> tools;
    for (const std::unique_ptr<DTool>& tool : bench.tools()) {
        tools.append(tool.get());
    }
    return tools;
}

/// Before the first window is made.
void chooseRenderer()
{
    if (!isSet("QT_QUICK_BACKEND") && !QOpenGLContext().create()) {
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software); // the display offers no other
    }
}

/// geometry is that of the window before; invalid for none.
int openWindow(QQuickWindow& window, Scene& scene, const QString& title, const WindowOptions& options,
               const QRect& geometry = {})
{
    window.setTitle(title);
    if (!options.sizeGiven && QGuiApplication::screenAt(geometry.center()) != nullptr) {
        window.setGeometry(geometry);
    } else {
        const QSize size = options.logicalSize(window.effectiveDevicePixelRatio());
        window.resize(options.sizeGiven ? size : size.boundedTo(window.screen()->availableSize()));
    }
    window.setMinimumSize(QSize(640, 400));
    QQuickItem& root = scene.root();
    root.setParentItem(window.contentItem());
    const auto fit = [&root, &window] { root.setSize(window.size()); };
    QObject::connect(&window, &QWindow::widthChanged, &root, fit);
    QObject::connect(&window, &QWindow::heightChanged, &root, fit);
    fit();
    const UnixSignals unixSignals;
    QObject::connect(&unixSignals, &UnixSignals::interrupted, qGuiApp, &QGuiApplication::quit);
    if (options.runMs) {
        QTimer::singleShot(*options.runMs, qGuiApp, &QGuiApplication::quit);
    }
    window.show();
    const int status = QGuiApplication::exec();
    root.setParentItem(nullptr);
    return status;
}

/// The window of a bench, as it was left.
int openBench(BenchScene& scene, const WindowOptions& options)
{
    WindowMemory memory(options.configuration);
    QVariantMap remembered = memory.recall();
    if (options.theme != WindowOptions::Theme::System) {
        remembered.remove(QStringLiteral("chosenTheme"));
    }
    scene.arrange(remembered);
    chooseRenderer();
    QQuickWindow window;
    const CloseGuard guard(scene, &window);
    QObject::connect(&guard, &CloseGuard::confirmed, qGuiApp, &QGuiApplication::quit);
    const QString geometry = QStringLiteral("geometry");
    const QString name = QFileInfo(options.configuration).fileName();
    const int status = openWindow(window, scene,
                                  (name.isEmpty() ? QString() : name + QStringLiteral(" \u2013 ")) +
                                      QStringLiteral("AppVantor"),
                                  options, remembered.value(geometry).toRect());
    QVariantMap arrangement = scene.arrangement();
    arrangement.insert(geometry, window.geometry());
    memory.remember(arrangement);
    return status;
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

int showWindow(Bench& bench, const WindowOptions& options)
{
    installTexts(options.locale);
    BenchScene scene(&bench.device(), toolsOf(bench), options.theme);
    return options.screenshotFile.isEmpty() ? openBench(scene, options) : takePicture(scene, options);
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
    return openWindow(window, scene, tool.objectName(), options);
}

} // namespace

const WindowPart* appvantorWindowPart()
{
    static constexpr WindowPart part = {prepare, makeApplication, showWindow, showPanel};
    return &part;
}
