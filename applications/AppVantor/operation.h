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

/// How a bench is put on the broker that the options name. Nothing, and in problem why, when there is none.
std::optional<RigServerSetup> serverSetup(const Options& options, QString* problem);

/// The forms of the command line, in which a bench on a broker answers.
RigForms rigForms();

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
    /// Begins. Returns an empty text, or why the options cannot be kept.
    QString begin(const Options& options);
    /// Ends the place on the broker, and switches off what the options want off. Returns the exit status of
    /// what happened. The trace goes on.
    int end(const Options& options);
    VcdTrace& trace() { return m_trace; }

private:
    Output* const m_output;
    std::unique_ptr<Bench> m_bench;
    VcdTrace m_trace;
    std::unique_ptr<RigServer> m_server;
};
