// The bench window with so many channels: how soon its first picture is there, how long the window does not
// answer while the rest is made, and how long a frame takes while one scrolls.

#include "rig.h"

#include <window/page_panel.h>
#include <window/scene.h>
#include <window/texts.h>

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTimer>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int c_frames = 300;

double msOf(const QElapsedTimer& timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// Watches for how long at most the event loop was busy with one thing, so that nobody was answered.
class StopWatch
{
public:
    StopWatch()
    {
        QObject::connect(&m_beat, &QTimer::timeout, &m_beat, [this] {
            m_longestMs = std::max(m_longestMs, msOf(m_sinceBeat));
            m_sinceBeat.start();
        });
        m_beat.start(1);
        forget();
    }
    Q_DISABLE_COPY(StopWatch)

    double longestMs() const { return m_longestMs; }
    void forget()
    {
        m_sinceBeat.start();
        m_longestMs = 0;
    }

private:
    QTimer m_beat;
    QElapsedTimer m_sinceBeat;
    double m_longestMs = 0;
};

/// True when a row of the page is there.
bool hasRow(const QQuickItem* item)
{
    const QList<QQuickItem*> children = item->childItems();
    return item->objectName() == QLatin1String("idChannelRow") ||
           std::any_of(children.cbegin(), children.cend(), hasRow);
}

/// The time of each frame, in milliseconds and from short to long, while the list with this name is scrolled
/// through.
std::vector<double> scroll(QQuickWindow& window, const QQuickItem& root, const QString& name)
{
    auto* list = root.findChild<QQuickItem*>(name);
    const double way = list->property("contentHeight").toDouble() - list->height();
    std::vector<double> frames;
    for (int frame = 0; frame < c_frames; ++frame) {
        QElapsedTimer timer;
        timer.start();
        list->setProperty("contentY", way * frame / c_frames);
        window.grabWindow();
        frames.push_back(msOf(timer));
        QCoreApplication::processEvents();
    }
    std::sort(frames.begin(), frames.end());
    return frames;
}

void printFrames(const std::vector<double>& frames)
{
    const auto quantile = [&frames](std::size_t percent) { return frames.at(frames.size() * percent / 100); };
    std::printf(" %.1f ms | %.1f ms |", quantile(50), quantile(95));
}

} // namespace

int main(int argc, char** argv)
{
    QElapsedTimer sinceStart;
    sinceStart.start();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    const int channels = argc > 1 ? std::atoi(argv[1]) : 64;
    installTexts(QLocale(QLocale::English));
    Rig rig(channels, {}, DevicePlace::OwnThread);
    BenchScene scene(&rig.board(), {&rig.tool()}, WindowOptions::Theme::Light);
    QQuickWindow window;
    window.resize(1280, 800);
    scene.root().setParentItem(window.contentItem());
    scene.root().setSize(window.size());

    double firstPictureMs = 0;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&] {
        const QQuickItem* page = scene.panel().page();
        if (firstPictureMs == 0 && page != nullptr && hasRow(page)) {
            firstPictureMs = msOf(sinceStart);
        }
    });
    window.show();
    StopWatch stops;
    while (!scene.panel().hasValues() || firstPictureMs == 0) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    const double allMs = msOf(sinceStart);
    const double longestMs = stops.longestMs();
    stops.forget();
    for (QElapsedTimer timer; !timer.isValid() || timer.elapsed() < 2000;) {
        if (!timer.isValid()) {
            timer.start();
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    std::printf("| %d | %.2f s | %.2f s | %.0f ms | %.0f ms |", channels, firstPictureMs / 1e3, allMs / 1e3,
                longestMs, stops.longestMs());
    printFrames(scroll(window, scene.root(), QStringLiteral("panelFlickable")));
    printFrames(scroll(window, scene.root(), QStringLiteral("boardLines")));
    std::printf("\n");
    scene.root().setParentItem(nullptr);
    return 0;
}
