#pragma once

#include "operation.h"

#include <command_line/order_file.h>
#include <window/bench_source.h>

/// The benches that the window shows, one after the other: the one that the command line names, and those
/// that the user opens. The trace of the command line belongs to the first, the place on a broker to each.
class WindowBenches : public BenchSource
{
public:
    /// first is in operation; output must outlive this.
    WindowBenches(std::unique_ptr<Operation> first, const Options& options, DevicePlace place,
                  Output* output);

    /// Ends the bench in operation and writes out what waits. Returns the worst of status and what happened.
    int end(int status);

    Bench& bench() const override { return m_operation->bench(); }
    std::unique_ptr<Bench> make(const QString& configuration, QVector<Problem>* mistakes) override;
    void exchange(std::unique_ptr<Bench> next) override;
    void watchScript(ScriptWatch watch) override { m_watch = std::move(watch); }
    DWording beginScript(DTool* tool, const QString& file) override;
    int ordersOfScript() const override { return m_script != nullptr ? m_script->runningOrders() : 0; }
    void stopScript() override;

private:
    void leaveBench();

    Options m_options;
    const DevicePlace m_place;
    Output* const m_output;
    std::unique_ptr<Operation> m_operation;
    std::unique_ptr<OrderFile> m_script; ///< on the bench in operation
    ScriptWatch m_watch;
    int m_status = 0; ///< the worst of what happened
};
