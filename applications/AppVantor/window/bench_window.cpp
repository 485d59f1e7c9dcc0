#include "bench_window.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace {

QString geometryKey()
{
    return QStringLiteral("geometry");
}

QString maximisedKey()
{
    return QStringLiteral("maximised");
}

QString chosenThemeKey()
{
    return QStringLiteral("chosenTheme");
}

/// The place of a window that was shown on other screens, moved and cut to be whole on these.
QRect placedOn(const QRect& screens, const QRect& window)
{
    const QSize size = window.size().boundedTo(screens.size());
    const QPoint corner(
        std::clamp(window.left(), screens.left(), screens.left() + screens.width() - size.width()),
        std::clamp(window.top(), screens.top(), screens.top() + screens.height() - size.height()));
    return {corner, size};
}

} // namespace

void fitWindow(QQuickWindow& window, const WindowOptions& options)
{
    const QSize size = options.logicalSize(window.effectiveDevicePixelRatio());
    window.resize(options.sizeGiven ? size : size.boundedTo(window.screen()->availableSize()));
    window.setMinimumSize(QSize(640, 400));
}

BenchWindow::BenchWindow(BenchSource* source, const WindowOptions& options)
    : m_source(source)
    , m_options(options)
    , m_configuration(options.configuration)
    , m_rig(options.rig)
{
    QVariantMap remembered = memory().recall();
    if (options.theme != WindowOptions::Theme::System) {
        remembered.remove(chosenThemeKey());
    }
    fitWindow(m_window, options);
    const QRect geometry = remembered.value(geometryKey()).toRect();
    if (!options.sizeGiven && geometry.isValid() && QGuiApplication::screenAt(geometry.center()) != nullptr) {
        m_window.setGeometry(placedOn(m_window.screen()->availableVirtualGeometry(), geometry));
    }
    m_geometry = m_window.geometry();
    if (!options.sizeGiven && remembered.value(maximisedKey()).toBool()) {
        m_window.setWindowState(Qt::WindowMaximized);
    }
    showBench(remembered);
}

BenchWindow::~BenchWindow()
{
    leaveBench();
}

void BenchWindow::show()
{
    m_window.setVisible(true); // QWindow::show would give it a size of its own
}

WindowMemory BenchWindow::memory() const
{
    return WindowMemory(m_configuration, m_rig);
}

void BenchWindow::showBench(const QVariantMap& remembered)
{
    const QString name = m_rig.isEmpty() ? QFileInfo(m_configuration).fileName() : m_rig;
    m_window.setTitle((name.isEmpty() ? QString() : name + QStringLiteral(" \u2013 ")) +
                      QStringLiteral("AppVantor"));
    if (!m_configuration.isEmpty()) {
        WindowMemory::noteRecent(m_configuration);
    }
    m_choice = std::make_unique<ConfigurationChoice>(m_source, m_configuration, m_rig.isEmpty());
    m_script = std::make_unique<ScriptRun>(m_source);
    m_scene =
        std::make_unique<BenchScene>(m_source->bench(), m_options.theme, m_choice.get(), m_script.get());
    m_scene->setOffAtEnd(m_options.offAtEnd);
    m_scene->arrange(remembered);
    m_scene->putInto(m_window);
    m_guard = std::make_unique<CloseGuard>(*m_scene, &m_window);
    connect(m_guard.get(), &CloseGuard::confirmed, this, &BenchWindow::closeConfirmed);
    connect(m_choice.get(), &ConfigurationChoice::ready, m_guard.get(), &CloseGuard::askToReplace);
    // What asks for it is part of what goes.
    connect(m_guard.get(), &CloseGuard::replacementConfirmed, this, &BenchWindow::exchange,
            Qt::QueuedConnection);
}

void BenchWindow::leaveBench()
{
    QVariantMap arrangement = m_scene->arrangement();
    const bool isMaximised = m_window.windowState() == Qt::WindowMaximized;
    arrangement.insert(maximisedKey(), isMaximised);
    arrangement.insert(geometryKey(), isMaximised ? m_geometry : m_window.geometry());
    memory().remember(arrangement);
    m_guard.reset();
    m_scene.reset();
    m_script.reset();
}

void BenchWindow::exchange()
{
    std::unique_ptr<Bench> next = m_choice->takeBench();
    if (next == nullptr) {
        return; // asked for twice
    }
    const QVariant theme = m_scene->arrangement().value(chosenThemeKey());
    leaveBench();
    m_configuration = m_choice->chosen();
    m_rig.clear();
    m_source->exchange(std::move(next));
    QVariantMap remembered = memory().recall();
    remembered.insert(chosenThemeKey(), theme); // the window stays the same
    showBench(remembered);
}
