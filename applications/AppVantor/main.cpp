#include "window_library.h"

#include <command_line/about.h>
#include <command_line/broker_options.h>
#include <command_line/discover.h>
#include <command_line/failure_report.h>
#include <command_line/get_channels.h>
#include <command_line/lease_rig.h>
#include <command_line/list_channels.h>
#include <command_line/list_commands.h>
#include <command_line/list_rigs.h>
#include <command_line/options.h>
#include <command_line/order_file.h>
#include <command_line/order_json.h>
#include <command_line/run_order.h>
#include <command_line/run_shell.h>
#include <command_line/set_channels.h>
#include <command_line/typed_line.h>
#include <command_line/watch_channels.h>
#include <configuration/bench.h>
#include <devices/rig_lookup.h>
#include <fleet/serve.h>
#include <process/diagnostics.h>
#include <process/did_you_mean.h>
#include <process/exit_status.h>
#include <process/message_log.h>
#include <process/output.h>
#include <trace/vcd_trace.h>

#include <QCoreApplication>
#include <QSysInfo>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace {

QString builtInConfiguration()
{
    return QStringLiteral(":/examples/simulated_board.json");
}

/// A standard stream that is closed would lend its number to the next file that is opened.
void openStandardStreams()
{
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (fcntl(stream, F_GETFD) == -1 &&
            open("/dev/null", stream == STDIN_FILENO ? O_RDONLY : O_WRONLY) == -1) {
            std::abort(); // a system without /dev/null runs nothing
        }
    }
}

std::vector<DTool*> toolsOf(const Bench& bench)
{
    std::vector<DTool*> tools;
    for (const auto& tool : bench.tools()) {
        tools.push_back(tool.get());
    }
    return tools;
}

QString noSuchTool(const QString& name, const Bench& bench)
{
    QStringList known;
    for (const DTool* tool : toolsOf(bench)) {
        known.append(tool->objectName());
    }
    return QStringLiteral("there is no tool \"%1\"").arg(name) + didYouMean(name, known);
}

bool opensWindow(const Options& options)
{
    return options.subcommand == Options::Subcommand::Window ||
           options.subcommand == Options::Subcommand::Panel;
}

WindowOptions windowOptions(const Options& options, Output* output)
{
    constexpr double msPerSecond = 1000.0;
    WindowOptions window;
    window.screenshotFile = options.screenshot;
    window.tellProblem = [output](const QString& problem) { reportFailure("picture", {problem}, output); };
    window.configuration = options.configuration;
    window.scale = options.scale;
    window.sizeGiven = !options.size.isEmpty();
    if (window.sizeGiven) {
        window.size = options.size;
    } else if (window.scale > 0) {
        window.size = (QSizeF(window.size) * window.scale).toSize();
    }
    if (options.seconds) {
        window.runMs = static_cast<int>(*options.seconds * msPerSecond);
    }
    window.locale = options.language.isEmpty() ? QLocale() : QLocale(options.language);
    if (!options.theme.isEmpty()) {
        window.theme =
            options.theme == QLatin1String("dark") ? WindowOptions::Theme::Dark : WindowOptions::Theme::Light;
    }
    return window;
}

int refuseUsage(const QString& problem, Output* output)
{
    reportFailure("usage", {problem}, output);
    return ExitWrongUsage;
}

/// The bench window, and beside it the orders of a file.
int showWindowWithOrders(const WindowPart& window, Bench* bench, DTool* tool, const Options& options,
                         Output* output)
{
    OrderFile orders(tool, output);
    const QString problem = options.orders.isEmpty() ? QString() : orders.begin(options.orders);
    if (!problem.isEmpty()) {
        return refuseUsage(problem, output);
    }
    const int status = window.showWindow(*bench, windowOptions(options, output));
    return std::max(status, orders.end());
}

/// How the bench is put on the broker that the options name. Nothing, and in problem why, when there is none.
std::optional<RigServerSetup> serverSetup(const Options& options, QString* problem)
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

RigForms rigForms()
{
    return {commandJson, followOrder};
}

/// Puts the bench on the broker that the options name.
int serve(const Bench& bench, const Options& options, Output* output)
{
    QString problem;
    const std::optional<RigServerSetup> setup = serverSetup(options, &problem);
    return setup ? serveBench(bench, *setup, rigForms(), output) : refuseUsage(problem, output);
}

/// What puts the bench on the broker of --serve, beside what else it does. Null without that option, and,
/// after a problem, when there is no such broker.
std::unique_ptr<RigServer> makeServer(const Bench& bench, const Options& options, QString* problem)
{
    if (options.serve.isEmpty()) {
        return nullptr;
    }
    Options there = options;
    there.broker = options.serve;
    there.rig.clear(); // that of --broker
    const std::optional<RigServerSetup> setup = serverSetup(there, problem);
    return setup ? std::make_unique<RigServer>(bench, *setup, rigForms()) : nullptr;
}

/// window is there when a window is opened.
int runSubcommand(const WindowPart* window, Bench* bench, DTool* tool, const Options& options, Output* output)
{
    switch (options.subcommand) {
    case Options::Subcommand::Commands:
        return listCommands(*tool, output);
    case Options::Subcommand::Channels:
        return listChannels(tool, output);
    case Options::Subcommand::Get:
        return getChannels(tool, options, output);
    case Options::Subcommand::Set:
        return setChannels(tool, options, output);
    case Options::Subcommand::Off:
        return switchOff(options.tool.isEmpty() ? toolsOf(*bench) : std::vector<DTool*>{tool}, output);
    case Options::Subcommand::Watch:
        return watchChannels(tool, options, output);
    case Options::Subcommand::Run:
        return runOrder(tool, options, output);
    case Options::Subcommand::Shell:
        return runShell(tool, options, output);
    case Options::Subcommand::Serve:
        return serve(*bench, options, output);
    case Options::Subcommand::Rigs:
    case Options::Subcommand::Lease:
    case Options::Subcommand::Release:
    case Options::Subcommand::Discover:
    case Options::Subcommand::About:
    case Options::Subcommand::Complete:
        break; // need no bench
    case Options::Subcommand::Window:
        return showWindowWithOrders(*window, bench, tool, options, output);
    case Options::Subcommand::Panel:
        return window->showPanel(*tool, windowOptions(options, output));
    }
    return ExitWrongUsage;
}

/// In a script the device may wait for the script; where a person sets the pace, it must not wait for them.
DevicePlace placeOf(const Options& options)
{
    if (options.realtime) {
        return DevicePlace::RealtimeThread;
    }
    const bool isWatched = opensWindow(options) || options.subcommand == Options::Subcommand::Serve ||
                           !options.serve.isEmpty() ||
                           (options.subcommand == Options::Subcommand::Shell && isInteractive(options));
    return isWatched ? DevicePlace::OwnThread : DevicePlace::SameThread;
}

/// Writes out what waits at the end: whoever reads output and trace may read one after the other. Returns
/// status, or that of a failure when something was lost.
int writeOut(int status, Output* output, VcdTrace* trace = nullptr)
{
    Outlet::drain({trace != nullptr ? trace->finish() : nullptr, output->outlet()});
    const bool traceIsWhole = trace == nullptr || trace->problem().isEmpty();
    if (status != ExitSuccess || (traceIsWhole && !output->hasFailed())) {
        return status;
    }
    return traceIsWhole && output->readerIsGone() ? ExitReaderGone : ExitOrderFailed;
}

/// True when the options name a rig on a broker to work on, in the place of a configuration.
bool isElsewhere(const Options& options)
{
    return !options.rig.isEmpty() && options.subcommand != Options::Subcommand::Serve;
}

/// The rig on the broker that the options name. Nothing, after telling why, when there is none; status
/// becomes that of the process then.
std::optional<BenchConfiguration> rigElsewhere(const Options& options, QVector<Problem>* problems,
                                               Output* output, int* status)
{
    QString problem;
    const std::optional<BrokerPlace> place = brokerOf(options, &problem);
    if (!place) {
        *status = refuseUsage(problem, output);
        return std::nullopt;
    }
    const std::optional<QByteArray> description = describedRig(place->address, place->access, &problem);
    if (!description) {
        reportFailure("deviceUnreachable", {problem}, output);
        *status = ExitDeviceUnreachable;
        return std::nullopt;
    }
    return readRigDescription(*description, place->address, place->access, problems);
}

/// The bench that the options name. Null, after telling why, when there is none; status becomes that of the
/// process then.
std::unique_ptr<Bench> makeBench(const Options& options, Output* output, int* status)
{
    *status = ExitWrongUsage;
    QVector<Problem> problems;
    const std::optional<BenchConfiguration> configuration =
        isElsewhere(options) ? rigElsewhere(options, &problems, output, status)
                             : readConfiguration(options.configuration.isEmpty() ? builtInConfiguration()
                                                                                 : options.configuration,
                                                 &problems);
    std::unique_ptr<Bench> bench;
    if (configuration) {
        Problem problem;
        bench = Bench::make(*configuration, placeOf(options), &problem.text);
        if (bench == nullptr) {
            problems.append(problem);
        }
    }
    for (const Problem& problem : qAsConst(problems)) {
        reportFailure("configuration", problem, output);
    }
    return bench;
}

int runBench(const Options& options, const WindowPart* window, Output* output)
{
    int unmade = ExitWrongUsage;
    const std::unique_ptr<Bench> bench = makeBench(options, output, &unmade);
    if (bench == nullptr) {
        return writeOut(unmade, output);
    }
    DTool* tool = bench->findTool(options.tool);
    if (tool == nullptr) {
        return writeOut(refuseUsage(noSuchTool(options.tool, *bench), output), output);
    }
    QObject::connect(&bench->device(), &DDevice::problemTold, &bench->device(),
                     [output](const QString& text) { reportFailure("device", {text}, output); });
    bench->device().open();
    VcdTrace trace(bench->device());
    if (!options.trace.isEmpty()) {
        const std::vector<DTool*> tools = toolsOf(*bench);
        const QString problem = trace.begin(options.trace, {tools.cbegin(), tools.cend()});
        if (!problem.isEmpty()) {
            return writeOut(refuseUsage(problem, output), output);
        }
    }
    QObject::connect(&trace, &VcdTrace::failed, &trace,
                     [output](const QString& text) { reportFailure("trace", {text}, output); });
    QString problem;
    const std::unique_ptr<RigServer> server = makeServer(*bench, options, &problem);
    if (!problem.isEmpty()) {
        return writeOut(refuseUsage(problem, output), output, &trace);
    }
    if (server != nullptr) {
        server->begin();
    }
    int status = runSubcommand(window, bench.get(), tool, options, output);
    if (server != nullptr) {
        server->end();
    }
    if (options.offAtEnd) {
        status = std::max(status, switchOff(toolsOf(*bench), output));
    }
    return writeOut(status, output, &trace);
}

/// Lists what the last word of a command line may be completed to; nothing where its bench is wrong.
int completeLine(const Options& options)
{
    Output output(false); // --json among the words is a word
    const TypedLine line(options.words);
    int unmade = ExitSuccess;
    const std::unique_ptr<Bench> bench =
        line.needsBench() ? makeBench(line.options(), &output, &unmade) : nullptr;
    const QStringList completions = line.completions(bench.get());
    for (const QString& completion : completions) {
        output.text(completion);
    }
    return writeOut(ExitSuccess, &output);
}

/// A subcommand without a window.
int runOnTerminal(const Options& options, Output* output)
{
    switch (options.subcommand) {
    case Options::Subcommand::Discover:
        return writeOut(discover(options, output), output);
    case Options::Subcommand::Rigs:
        return writeOut(listRigs(options, output), output);
    case Options::Subcommand::Lease:
        return writeOut(leaseRig(options, output), output);
    case Options::Subcommand::Release:
        return writeOut(releaseRig(options, output), output);
    case Options::Subcommand::About:
        return writeOut(tellAbout(output), output);
    case Options::Subcommand::Complete:
        return completeLine(options);
    default:
        return runBench(options, nullptr, output);
    }
}

int runWindow(int& argc, char* argv[], const Options& options, Output* output)
{
    const auto refuse = [output](const QString& problem) {
        return writeOut(
            refuseUsage(problem + QStringLiteral("; \"appvantor --help\" tells what else there is"), output),
            output);
    };
    QString problem;
    const WindowPart* window = loadWindow(&problem);
    if (window == nullptr) {
        return refuse(problem);
    }
    problem = window->prepare(windowOptions(options, output));
    if (!problem.isEmpty()) {
        return refuse(problem);
    }
    const auto application = window->makeApplication(argc, argv);
    return runBench(options, window, output);
}

/// The options that put something onto standard output that leaves no room for anything else.
QStringList onStandardOutput(const Options& options)
{
    QStringList names;
    if (options.trace == QLatin1String("-")) {
        names.append(QStringLiteral("--trace"));
    }
    if (options.screenshot == QLatin1String("-")) {
        names.append(QStringLiteral("--screenshot"));
    }
    return names;
}

/// Carries out what the arguments of the process ask for. Returns the exit status.
int run(int argc, char* argv[])
{
    bool json = false; // also where the arguments are wrong
    const ParsedOptions parsed = [&] {
        const QCoreApplication application(argc, argv); // which kind the process needs, the arguments tell
        json = QCoreApplication::arguments().contains(QStringLiteral("--json"));
        return parseOptions(QCoreApplication::arguments());
    }();
    if (!parsed.options && parsed.exitStatus == ExitSuccess) {
        Output help(false);
        help.text(parsed.text);
        return writeOut(ExitSuccess, &help);
    }
    const QStringList streams = parsed.options ? onStandardOutput(*parsed.options) : QStringList();
    Output output(json, !streams.isEmpty() && !json);
    if (!parsed.options) {
        return writeOut(refuseUsage(parsed.text, &output), &output);
    }
    const Options& options = *parsed.options;
    if (streams.size() > (json ? 0 : 1)) {
        const QString problem = QStringLiteral("%1 -: standard output has what %2 writes, expected a file");
        return writeOut(
            refuseUsage(problem.arg(streams.last(), json ? QStringLiteral("--json") : streams.first()),
                        &output),
            &output);
    }
    installMessageLog(options.logLevel);
    if (opensWindow(options)) {
        return runWindow(argc, argv, options, &output);
    }
    const QCoreApplication application(argc, argv);
    return runOnTerminal(options, &output);
}

} // namespace

int main(int argc, char* argv[])
{
    openStandardStreams();
    std::signal(SIGPIPE, SIG_IGN); // a closed output is told, not died of
    std::signal(SIGXFSZ, SIG_IGN); // and so is a file that must not grow
    qputenv("QT_NO_GLIB", "1");    // Qt's own event loop wakes itself with fewer system calls
    QCoreApplication::setApplicationName(QStringLiteral("appvantor"));
    QCoreApplication::setApplicationVersion(QStringLiteral(APPVANTOR_VERSION));
    const int status = run(argc, argv);
    drainStandardError();
    return status;
}
