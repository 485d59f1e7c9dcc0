#include "operation.h"

#include <command_line/broker_options.h>
#include <command_line/failure_report.h>
#include <command_line/list_commands.h>
#include <command_line/order_json.h>
#include <command_line/set_channels.h>
#include <process/exit_status.h>

#include <QSysInfo>

#include <algorithm>

namespace {

/// How a bench is put on the broker that the options name. Nothing, and in problem why, when there is none.
std::optional<RigServerSetup> serverSetup(const Options& options, DWording* problem)
{
    std::optional<BrokerPlace> place = brokerOf(options, problem);
    if (!place) {
        return std::nullopt;
    }
    if (place->address.rig.isEmpty()) {
        place->address.rig = QSysInfo::machineHostName();
    }
    return RigServerSetup{place->address, place->access, options.readOnly, options.homeAssistant};
}

/// What puts the bench on the broker of the subcommand serve, or, beside what else it does, of --serve. Null
/// without them, and, after a problem, when there is no such broker.
std::unique_ptr<RigServer> makeServer(const Bench& bench, const Options& options, DWording* problem)
{
    Options there = options;
    if (options.subcommand != Options::Subcommand::Serve) {
        if (options.serve.isEmpty()) {
            return nullptr;
        }
        there.broker = options.serve;
        there.rig.clear(); // that of --broker
    }
    const std::optional<RigServerSetup> setup = serverSetup(there, problem);
    // It answers in the forms of the command line.
    return setup ? std::make_unique<RigServer>(bench, *setup, RigForms{commandJson, followOrder}) : nullptr;
}

} // namespace

std::vector<DTool*> toolsOf(const Bench& bench)
{
    std::vector<DTool*> tools;
    for (const auto& tool : bench.tools()) {
        tools.push_back(tool.get());
    }
    return tools;
}

std::unique_ptr<Bench> readBench(const QString& configuration, DevicePlace place, QVector<Problem>* problems)
{
    const QString builtIn = QStringLiteral(":/examples/simulated_board.json");
    const std::optional<BenchConfiguration> described =
        readConfiguration(configuration.isEmpty() ? builtIn : configuration, problems);
    return described ? makeBench(*described, place, problems) : nullptr;
}

std::unique_ptr<Bench> makeBench(const BenchConfiguration& configuration, DevicePlace place,
                                 QVector<Problem>* problems)
{
    Problem problem;
    std::unique_ptr<Bench> bench = Bench::make(configuration, place, &problem.text);
    if (bench == nullptr) {
        problems->append(problem);
    }
    return bench;
}

int writeOut(int status, Output* output, VcdTrace* trace)
{
    Outlet::drain({trace != nullptr ? trace->finish() : nullptr, output->outlet()});
    const bool traceIsWhole = trace == nullptr || trace->problem().isEmpty();
    if (status != ExitSuccess || (traceIsWhole && !output->hasFailed())) {
        return status;
    }
    return traceIsWhole && output->readerIsGone() ? ExitReaderGone : ExitOrderFailed;
}

Operation::Operation(std::unique_ptr<Bench> bench, Output* output)
    : m_output(output)
    , m_bench(std::move(bench))
    , m_trace(m_bench->device())
{
    LineDevice& device = m_bench->device();
    QObject::connect(&device, &DDevice::problemTold, &device,
                     [output](const DWording& text) { reportFailure("device", {text}, output); });
}

DWording Operation::begin(const Options& options)
{
    m_bench->device().open();
    DWording problem;
    if (!options.trace.isEmpty()) {
        const std::vector<DTool*> tools = toolsOf(*m_bench);
        problem = m_trace.begin(options.trace, {tools.cbegin(), tools.cend()});
        // From now on: what keeps it from beginning is returned.
        QObject::connect(&m_trace, &VcdTrace::failed, &m_trace, [output = m_output](const DWording& text) {
            reportFailure("trace", {text}, output);
        });
    }
    if (problem.isEmpty()) {
        m_server = makeServer(*m_bench, options, &problem);
    }
    if (m_server != nullptr) {
        m_server->begin();
    }
    return problem;
}

int Operation::end(const Options& options)
{
    if (m_server != nullptr) {
        m_server->close(); // lest something is switched on again
    }
    const int status = options.offAtEnd ? switchOff(toolsOf(*m_bench), m_output) : ExitSuccess;
    if (m_server != nullptr) {
        m_server->end();
    }
    return status;
}
