#pragma once

#include "manual_scheduler.h"
#include "recording_client.h"

#include <devices/simulated_board.h>
#include <plugin_management/d_tool.h>

#include <memory>

/// A bench whose time stands still until it is moved, so that every picture of it is the same: digital and
/// analogue lines in and out, wires, and a tool whose channels are linked to them.
class ExampleBench
{
public:
    /// As many lines and as many channels as lines, 4 or more.
    explicit ExampleBench(int lines);

    ManualScheduler& scheduler() { return m_scheduler; }
    LineDevice& board() { return *m_board; }
    DTool& tool() { return *m_tool; }
    QVector<DTool*> tools() const { return {m_tool.get()}; }
    void closeTool() { m_tool.reset(); }

    /// Lets us microseconds pass, during which lines are switched in a pattern of their own.
    void play(qint64 us);

private:
    ManualScheduler m_scheduler;
    RecordingClient m_client;
    quint64 m_lastRequest = 1000000; ///< far from the numbers of the orders
    std::unique_ptr<LineDevice> m_board;
    std::unique_ptr<DTool> m_tool;
};
