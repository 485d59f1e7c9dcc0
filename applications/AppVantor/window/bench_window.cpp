#include "bench_window.h"

#include "bench_scene.h"
#include "panel_scene.h"
#include "show_scene.h"

#include "../bench/bench.h"

namespace {

QVector<DTool*> toolsOf(const Bench& bench)
{
    QVector<DTool*> tools;
    for (const std::unique_ptr<DTool>& tool : bench.tools()) {
        tools.append(tool.get());
    }
    return tools;
}

} // namespace

int showWindow(Bench& bench, const WindowOptions& options)
{
    prepareScene(options);
    BenchScene scene(&bench.device(), toolsOf(bench), options.theme);
    return showScene(scene, QStringLiteral("AppVantor"), options);
}

int showPanel(Bench& bench, DTool& tool, const WindowOptions& options)
{
    Q_UNUSED(bench)
    prepareScene(options);
    PanelScene scene(&tool, options.theme);
    return showScene(scene, tool.objectName(), options);
}
