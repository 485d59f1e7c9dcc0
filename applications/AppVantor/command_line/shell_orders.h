#pragma once

#include "driven_channels.h"
#include "invocation.h"
#include "order_report.h"
#include "script.h"

#include <plugin_management/d_failure.h>
#include <process/output.h>

#include <map>
#include <memory>
#include <optional>

class DOrder;
struct DToolChannel;

/// The orders of a shell by their numbers, from 1, and what they leave behind.
class ShellOrders : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ShellOrders)

public:
    /// tool and output must outlive this.
    ShellOrders(DTool* tool, Output* output);
    ~ShellOrders() override;

    /// Starts the order that line asks for. Returns why it is none, which has been told, or no failure; its
    /// end, which may have been already, is told by ended.
    DFailure start(const Invocation& invocation, const ScriptLine& line);
    /// The same for an order that reads channel; its level is told as people write it.
    DFailure read(const DToolChannel& channel, const ScriptLine& line);
    /// The number of the order that was started last; 0 before the first.
    int last() const { return m_last; }
    bool isRunning(int number) const { return m_running.count(number) > 0; }
    /// Number of orders that have not ended.
    int running() const { return static_cast<int>(m_running.size()); }
    /// Of a running order.
    bool isListening(int number) const;
    QString command(int number) const { return m_running.at(number).invocation.command; }
    /// Stops a running order.
    void stop(int number);
    void stopAll();
    /// Tells which channels go on changing by themselves, if any.
    void reportDriven() const;

Q_SIGNALS:
    /// The order that line had asked for has ended.
    void ended(const ScriptLine& line, const DFailure& failure);

private:
    struct Running
    {
        std::unique_ptr<DOrder> order;
        Invocation invocation;
        ScriptLine line;
    };

    DFailure start(const Invocation& invocation, const ScriptLine& line,
                   const std::optional<ChannelReport>& ofChannel);
    void orderEnded(int number);

    DTool* const m_tool;
    Output* const m_output;
    int m_last = 0;
    std::map<int, Running> m_running;
    DrivenChannels m_driven;
};
