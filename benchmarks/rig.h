#pragma once

#include <manual_scheduler.h>

#include <devices/simulated_board.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>

#include <memory>

/// The plugin as it was built, on a connected simulated board; in one thread, the board's time stands still.
/// Lines with even numbers are outputs of the board, those with odd numbers inputs; channel N is linked to
/// line N.
class Rig
{
public:
    explicit Rig(int lines, const QVector<SimulatedBoardSetup::Fault>& faults = {},
                 DevicePlace place = DevicePlace::SameThread);

    DTool& tool() { return m_tool; }
    LineDevice& board() { return *m_board; }

    static QString channel(int line);
    /// The channel's entry in the configuration of the tool.
    static QVariantMap channelEntry(int line);

    /// A new order that has not been started.
    std::unique_ptr<DOrder> order(const QString& command, const QVariantMap& arguments);
    /// Starts to listen to a channel, with an edge mode or none, and takes the first reply. What the listener
    /// tells is added to events.
    std::unique_ptr<DOrder> listener(int line, const QString& edge, int* events);
    /// Gives an input line the level that it has not; in one thread only.
    void toggle(int line);

private:
    ManualScheduler m_scheduler;
    std::unique_ptr<LineDevice> m_board;
    DTool m_tool;
};
