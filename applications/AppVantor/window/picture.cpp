#include "picture.h"

#include "page_panel.h"
#include "scene.h"

#include <process/exit_status.h>
#include <process/outlet.h>
#include <process/write_all.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QImageWriter>
#include <QQuickRenderControl>
#include <QQuickWindow>
#include <QSaveFile>
#include <QTimer>

#include <unistd.h>

namespace {

constexpr int c_longestWaitMs = 30000;

/// A window that is on no screen, with an item in it.
class Canvas
{
public:
    Canvas(QQuickItem* content, const WindowOptions& options)
        : m_window(&m_control)
        , m_content(content)
    {
        m_control.initialize(nullptr);
        const QSize size = options.logicalSize(m_window.effectiveDevicePixelRatio());
        m_window.resize(size);
        m_window.contentItem()->setSize(size);
        content->setParentItem(m_window.contentItem());
        content->setSize(size);
    }
    ~Canvas()
    {
        m_content->setParentItem(nullptr);
        m_control.invalidate(); // what was drawn goes before the window
    }
    Q_DISABLE_COPY(Canvas)

    /// The content as it is now.
    QImage draw()
    {
        m_control.polishItems();
        m_control.sync();
        return m_control.grab();
    }

private:
    QQuickRenderControl m_control;
    QQuickWindow m_window;
    QQuickItem* const m_content;
};

/// Lets everything run for runMs, and on until the panel has its values; the rows of a page come with the
/// first pass of the event loop, also those of one that gets no values. False when the values do not come.
bool waitForValues(const PagePanel& panel, int runMs)
{
    const QDeadlineTimer runs(runMs);
    const QDeadlineTimer gone(runMs + c_longestWaitMs);
    QTimer wakeUp;
    wakeUp.start(10);
    do {
        if (gone.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    } while (!runs.hasExpired() || !panel.hasValues());
    return true;
}

QString failureOf(const QString& file, const QString& reason)
{
    return QStringLiteral("cannot write the picture %1: %2").arg(file, reason);
}

QString writeFile(const QByteArray& png, const QString& file)
{
    // A picture takes the place of what has its name, which must not be a device or a pipe.
    const QFileInfo present(file);
    if (present.exists() && !present.isFile()) {
        return failureOf(file, QStringLiteral("not a regular file"));
    }
    QSaveFile target(file);
    const bool written = target.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
                         writeAll(png, &target) && target.commit();
    return written ? QString() : failureOf(file, target.errorString());
}

/// Writes a picture to standard output, at the pace of its reader.
QString writeOut(const QByteArray& png)
{
    Outlet outlet(STDOUT_FILENO);
    outlet.write({png.constData(), static_cast<std::size_t>(png.size())});
    Outlet::drain({&outlet});
    return outlet.error() == 0
               ? QString()
               : failureOf(QStringLiteral("standard output"), qt_error_string(outlet.error()));
}

/// Returns an empty text, or why the picture cannot be written.
QString write(const QImage& picture, const QString& file)
{
    QBuffer png;
    QImageWriter writer(&png, "png");
    if (!writer.write(picture)) {
        return failureOf(file, writer.errorString());
    }
    return file == QLatin1String("-") ? writeOut(png.data()) : writeFile(png.data(), file);
}

} // namespace

int takePicture(Scene& scene, const WindowOptions& options)
{
    Canvas canvas(&scene.root(), options);
    const bool arrived = waitForValues(scene.panel(), options.runMs.value_or(0));
    const QImage drawn = canvas.draw().copy(QRect(QPoint(0, 0), options.size));
    const QString problem = write(drawn.convertToFormat(QImage::Format_RGB32), options.screenshotFile);
    if (!problem.isEmpty()) {
        options.tellProblem(problem);
        return ExitWrongUsage;
    }
    if (!arrived) {
        options.tellProblem(
            QStringLiteral("the values did not arrive within %1 s").arg(c_longestWaitMs / 1000));
    }
    const QString pageProblem = scene.panel().problem();
    if (!pageProblem.isEmpty()) {
        options.tellProblem(pageProblem);
    }
    return arrived && pageProblem.isEmpty() ? ExitSuccess : ExitOrderFailed;
}
