#include "operation.h"
#include "window_benches.h"
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

#include <QCoreApplication>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace {

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

QString noSuchTool(const QString& name, const Bench& bench)
{
    QStringList known;
    for (const DTool* tool : toolsOf(bench)) {
        known.append(tool->objectName());
    }
    return QStringLiteral("there is no tool \"%1\"").arg(name) + didYouMean(name, known).english();
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
    window.rig = rigMeant(options).value_or(QString());
    window.offAtEnd = options.offAtEnd;
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

/// window is there when a window is opened.
int runSubcommand(const WindowPart* window, const Operation& operation, DTool* tool, const Options& options,
                  Output* output)
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
        return switchOff(options.tool.isEmpty() ? toolsOf(operation.bench()) : std::vector<DTool*>{tool},
                         output);
    case Options::Subcommand::Watch:
        return watchChannels(tool, options, output);
    case Options::Subcommand::Run:
        return runOrder(tool, options, output);
    case Options::Subcommand::Shell:
        return runShell(tool, options, output);
    case Options::Subcommand::Serve:
        return waitForEnd(*operation.server(), output);
    case Options::Subcommand::Rigs:
    case Options::Subcommand::Lease:
    case Options::Subcommand::Release:
    case Options::Subcommand::Discover:
    case Options::Subcommand::About:
    case Options::Subcommand::Complete:
    case Options::Subcommand::Window:
        break; // need no bench, or more than one
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

/// True when the options name a rig on a broker to work on, in the place of a configuration.
bool isElsewhere(const Options& options)
{
    return options.subcommand != Options::Subcommand::Serve && rigMeant(options);
}

/// The rig on the broker that the options name. Nothing, after telling why, when there is none; status
/// becomes that of the process then.
std::optional<BenchConfiguration> rigElsewhere(const Options& options, QVector<Problem>* problems,
                                               Output* output, int* status)
{
    DWording problem;
    const std::optional<BrokerPlace> place = brokerOf(options, &problem);
    if (!options.configuration.isEmpty()) {
        problem = wording("--config: expected none beside a rig on a broker, which describes itself");
    } else if (place && place->address.rig.isEmpty()) {
        problem = wording("expected the name of a rig: --rig NAME, or mqtt://HOST/NAME");
    }
    if (!problem.isEmpty()) {
        *status = refuseUsage(problem.english(), output);
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
std::unique_ptr<Bench> namedBench(const Options& options, Output* output, int* status)
{
    *status = ExitWrongUsage;
    QVector<Problem> problems;
    std::unique_ptr<Bench> bench;
    if (!isElsewhere(options)) {
        bench = readBench(options.configuration, placeOf(options), &problems);
    } else if (const auto rig = rigElsewhere(options, &problems, output, status)) {
        bench = makeBench(*rig, placeOf(options), &problems);
    }
    for (const Problem& problem : qAsConst(problems)) {
        reportFailure("configuration", problem, output);
    }
    return bench;
}

/// Carries out the subcommand on the bench in operation; window is there when a window is opened.
int runOn(std::unique_ptr<Operation> operation, DTool* tool, const Options& options, const WindowPart* window,
          Output* output)
{
    if (options.subcommand != Options::Subcommand::Window) {
        const int status = runSubcommand(window, *operation, tool, options, output);
        return writeOut(std::max(status, operation->end(options)), output, &operation->trace());
    }
    WindowBenches benches(std::move(operation), options, placeOf(options), output);
    const DWording problem =
        options.orders.isEmpty() ? DWording() : benches.beginScript(tool, options.orders);
    const int status = problem.isEmpty() ? window->showWindow(benches, windowOptions(options, output))
                                         : refuseUsage(problem.english(), output);
    return benches.end(status);
}

int runBench(const Options& options, const WindowPart* window, Output* output)
{
    int unmade = ExitWrongUsage;
    std::unique_ptr<Bench> bench = namedBench(options, output, &unmade);
    if (bench == nullptr) {
        return writeOut(unmade, output);
    }
    DTool* tool = bench->findTool(options.tool);
    if (tool == nullptr) {
        return writeOut(refuseUsage(noSuchTool(options.tool, *bench), output), output);
    }
    auto operation = std::make_unique<Operation>(std::move(bench), output);
    const DWording problem = operation->begin(options);
    if (!problem.isEmpty()) {
        return writeOut(refuseUsage(problem.english(), output), output, &operation->trace());
    }
    return runOn(std::move(operation), tool, options, window, output);
}

/// Lists what the last word of a command line may be completed to; nothing where its bench is wrong.
int completeLine(const Options& options)
{
    Output output(false); // --json among the words is a word
    const TypedLine line(options.words);
    int unmade = ExitSuccess;
    const std::unique_ptr<Bench> bench =
        line.needsBench() ? namedBench(line.options(), &output, &unmade) : nullptr;
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
    if (!qEnvironmentVariableIsSet("RES_OPTIONS")) {
        qputenv("RES_OPTIONS", "timeout:1 attempts:2"); // an end waits for the names that are being looked up
    }
    QCoreApplication::setApplicationName(QStringLiteral("appvantor"));
    QCoreApplication::setApplicationVersion(QStringLiteral(APPVANTOR_VERSION));
    const int status = run(argc, argv);
    drainStandardError();
    return status;
}
