#pragma once

#include <command_line/options.h>
#include <configuration/bench.h>
#include <fleet/rig_server.h>
#include <process/output.h>
#include <trace/vcd_trace.h>

#include <memory>
#include <optional>

/// The tools of bench.
std::vector<DTool*> toolsOf(const Bench& bench);

/// The bench of a configuration file, or of the built-in configuration without a name. Null after mistakes;
/// problems tells them.
std::unique_ptr<Bench> readBench(const QString& configuration, DevicePlace place, QVector<Problem>* problems);
/// The bench that configuration describes. Null, and in problems why, when it cannot be made.
std::unique_ptr<Bench> makeBench(const BenchConfiguration& configuration, DevicePlace place,
                                 QVector<Problem>* problems);

/// Writes out what waits at the end: whoever reads output and trace may read one after the other. Returns
/// status, or that of a failure when something was lost.
int writeOut(int status, Output* output, VcdTrace* trace = nullptr);

/// A bench in operation with what the options put beside it: a trace, and its place on a broker.
class Operation
{
public:
    /// output must outlive this.
    Operation(std::unique_ptr<Bench> bench, Output* output);
    Q_DISABLE_COPY(Operation)

    Bench& bench() const { return *m_bench; }
    /// Begins. Returns nothing, or why the options cannot be kept.
    DWording begin(const Options& options);
    /// Switches off what the options want off, and ends the place on the broker, which hears of it. Returns
    /// the exit status of what happened. The trace goes on.
    int end(const Options& options);
    VcdTrace& trace() { return m_trace; }
    /// What puts the bench on a broker; null where nothing does.
    const RigServer* server() const { return m_server.get(); }

private:
    Output* const m_output;
    std::unique_ptr<Bench> m_bench;
    VcdTrace m_trace;
    std::unique_ptr<RigServer> m_server;
};
