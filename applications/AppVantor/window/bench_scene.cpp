#include "bench_scene.h"

BenchScene::BenchScene(LineDevice* device, const QVector<DTool*>& tools, WindowOptions::Theme theme,
                       DeviceClock::LocalClock localClock)
    : m_clock(std::move(localClock))
    , m_tools(tools)
    , m_lines(device, tools, &m_clock)
    , m_form(&m_orders)
{
    m_filter.setSourceModel(&m_lines);
    m_clock.setRunning(true);
    const auto object = [](QObject* part) {
        QQmlEngine::setObjectOwnership(part, QQmlEngine::CppOwnership);
        return QVariant::fromValue(part);
    };
    load(QStringLiteral("BenchWindow.qml"),
         {{QStringLiteral("tools"), object(&m_tools)},
          {QStringLiteral("lines"), object(&m_lines)},
          {QStringLiteral("lineFilter"), object(&m_filter)},
          {QStringLiteral("clock"), object(&m_clock)},
          {QStringLiteral("form"), object(&m_form)},
          {QStringLiteral("orders"), object(&m_orders)}},
         theme);
}

BenchScene::~BenchScene()
{
    unload();
}
