#pragma once

#include "scene.h"

class DTool;

/// The maintenance page of one tool alone.
class PanelScene : public Scene
{
public:
    /// tool must outlive the scene.
    PanelScene(DTool* tool, WindowOptions::Theme theme);
    ~PanelScene() override;
};
