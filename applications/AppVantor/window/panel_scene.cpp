#include "panel_scene.h"

#include <plugin_management/d_tool.h>

PanelScene::PanelScene(DTool* tool, WindowOptions::Theme theme)
{
    QQmlEngine::setObjectOwnership(tool, QQmlEngine::CppOwnership);
    load(QStringLiteral("PanelWindow.qml"), {{QStringLiteral("tool"), QVariant::fromValue<QObject*>(tool)}},
         theme);
}

PanelScene::~PanelScene()
{
    unload();
}
