#include "show_scene.h"

#include "page_panel.h"
#include "picture.h"
#include "scene.h"
#include "texts.h"

#include "../bench/exit_status.h"
#include "../bench/unix_signals.h"

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QOpenGLContext>
#include <QQuickWindow>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

constexpr int c_longestWaitMs = 30000;

void tellProblem(const QString& problem)
{
    std::fprintf(stderr, "appvantor: %s\n", qPrintable(problem));
}

QSize logicalSize(const QSize& pixels, qreal ratio)
{
    return {static_cast<int>(std::ceil(pixels.width() / ratio)),
            static_cast<int>(std::ceil(pixels.height() / ratio))};
}

/// Lets everything run for runMs, and on until the panel has its values. False when they do not come.
bool waitForValues(const PagePanel& panel, int runMs)
{
    const QDeadlineTimer runs(runMs);
    const QDeadlineTimer gone(runMs + c_longestWaitMs);
    QTimer wakeUp;
    wakeUp.start(10);
    while (!runs.hasExpired() || !panel.hasValues()) {
        if (gone.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

int writePicture(Scene& scene, const WindowOptions& options)
{
    Picture picture;
    const qreal ratio = picture.window().effectiveDevicePixelRatio();
    picture.setContent(&scene.root(), logicalSize(options.size, ratio));
    const bool arrived = waitForValues(scene.panel(), options.runMs);
    const QString problem = picture.write(options.screenshotFile, options.size);
    if (!problem.isEmpty()) {
        tellProblem(problem);
        return ExitWrongUsage;
    }
    if (!arrived) {
        tellProblem(QStringLiteral("the values did not arrive within %1 s").arg(c_longestWaitMs / 1000));
    }
    const QString pageProblem = scene.panel().problem();
    if (!pageProblem.isEmpty()) {
        tellProblem(pageProblem);
    }
    return arrived && pageProblem.isEmpty() ? ExitSuccess : ExitOrderFailed;
}

int openWindow(Scene& scene, const QString& title, const WindowOptions& options)
{
    QQuickWindow window;
    window.setTitle(title);
    window.resize(logicalSize(options.size, window.effectiveDevicePixelRatio()));
    window.setMinimumSize(QSize(640, 400));
    QQuickItem& root = scene.root();
    root.setParentItem(window.contentItem());
    const auto fit = [&root, &window] { root.setSize(window.size()); };
    QObject::connect(&window, &QWindow::widthChanged, &root, fit);
    QObject::connect(&window, &QWindow::heightChanged, &root, fit);
    fit();
    const UnixSignals signals_;
    QObject::connect(&signals_, &UnixSignals::interrupted, qGuiApp, &QGuiApplication::quit);
    window.show();
    const int status = QGuiApplication::exec();
    root.setParentItem(nullptr);
    return status;
}

} // namespace

void prepareScene(const WindowOptions& options)
{
    installTexts(options.locale);
    const bool picture = !options.screenshotFile.isEmpty();
    if (picture || (QQuickWindow::sceneGraphBackend().isEmpty() && !QOpenGLContext().create())) {
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
    }
}

int showScene(Scene& scene, const QString& title, const WindowOptions& options)
{
    return options.screenshotFile.isEmpty() ? openWindow(scene, title, options)
                                            : writePicture(scene, options);
}
