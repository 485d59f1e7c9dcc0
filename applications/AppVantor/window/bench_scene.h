#pragma once

#include "command_form.h"
#include "device_clock.h"
#include "line_filter.h"
#include "lines_model.h"
#include "order_log_model.h"
#include "scene.h"
#include "tools_model.h"

/// The bench window's scene with its models.
class BenchScene : public Scene
{
public:
    /// device and tools must outlive the scene. localClock is for tests, see DeviceClock.
    BenchScene(LineDevice* device, const QVector<DTool*>& tools, WindowOptions::Theme theme,
               DeviceClock::LocalClock localClock = DeviceClock::LocalClock());
    ~BenchScene() override;

    LinesModel& lines() { return m_lines; }
    OrderLogModel& orders() { return m_orders; }
    CommandForm& form() { return m_form; }
    DeviceClock& clock() { return m_clock; }

private:
    DeviceClock m_clock;
    ToolsModel m_tools;
    LinesModel m_lines;
    LineFilter m_filter;
    OrderLogModel m_orders;
    CommandForm m_form;
};
