#include "bench/bench.h"
#include "bench/exit_status.h"
#include "command_line/discover.h"
#include "command_line/list_channels.h"
#include "command_line/list_commands.h"
#include "command_line/message_log.h"
#include "command_line/options.h"
#include "command_line/output.h"
#include "command_line/run_order.h"
#include "command_line/run_shell.h"
#include "trace/vcd_trace.h"
#include "window/bench_window.h"

#include <QGuiApplication>

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

DTool* findTool(const Bench& bench, const QString& name)
{
    for (const auto& tool : bench.tools()) {
        if (name.isEmpty() || tool->objectName() == name) {
            return tool.get();
        }
    }
    return nullptr;
}

bool opensWindow(const Options& options)
{
    return options.subcommand == Options::Subcommand::Window ||
           options.subcommand == Options::Subcommand::Panel;
}

WindowOptions windowOptions(const Options& options)
{
    constexpr double msPerSecond = 1000.0;
    WindowOptions window;
    window.screenshotFile = options.screenshot;
    window.size = options.size.isEmpty() ? window.size : options.size;
    window.scale = options.scale;
    window.runMs = static_cast<int>(options.seconds.value_or(0.0) * msPerSecond);
    window.locale = options.language.isEmpty() ? QLocale() : QLocale(options.language);
    if (!options.theme.isEmpty()) {
        window.theme =
            options.theme == QLatin1String("dark") ? WindowOptions::Theme::Dark : WindowOptions::Theme::Light;
    }
    return window;
}

int carryOut(Bench* bench, DTool* tool, const Options& options, Output* output)
{
    switch (options.subcommand) {
    case Options::Subcommand::Commands:
        return listCommands(*tool, output);
    case Options::Subcommand::Channels:
        return listChannels(tool, output);
    case Options::Subcommand::Run:
        return runOrder(tool, options, output);
    case Options::Subcommand::Shell:
        return runShell(tool, options, output);
    case Options::Subcommand::Discover:
        break; // needs no bench
    case Options::Subcommand::Window:
        return showWindow(*bench, windowOptions(options));
    case Options::Subcommand::Panel:
        return showPanel(*bench, *tool, windowOptions(options));
    }
    return ExitWrongUsage;
}

int runBench(const Options& options)
{
    QString problem;
    const std::optional<BenchConfiguration> configuration = readConfiguration(
        options.configuration.isEmpty() ? builtInConfiguration() : options.configuration, &problem);
    const std::unique_ptr<Bench> bench = configuration ? Bench::make(*configuration, &problem) : nullptr;
    if (bench == nullptr) {
        Output::diagnostic(problem);
        return ExitWrongUsage;
    }
    DTool* tool = findTool(*bench, options.tool);
    if (tool == nullptr) {
        Output::diagnostic(QStringLiteral("there is no tool \"%1\"").arg(options.tool));
        return ExitWrongUsage;
    }
    VcdTrace trace(bench->device());
    if (!options.trace.isEmpty()) {
        problem = trace.begin(options.trace);
        if (!problem.isEmpty()) {
            Output::diagnostic(problem);
            return ExitWrongUsage;
        }
    }
    QObject::connect(&trace, &VcdTrace::failed, &trace,
                     [](const QString& text) { Output::diagnostic(text); });
    Output output(options.json);
    const int status = carryOut(bench.get(), tool, options, &output);
    const bool lost = output.hasFailed() || !trace.end().isEmpty();
    return lost && status == ExitSuccess ? ExitOrderFailed : status;
}

/// The chips of the machine are there without a bench.
int runDiscovery(const Options& options)
{
    Output output(options.json);
    const int status = discover(options, &output);
    return output.hasFailed() && status == ExitSuccess ? ExitOrderFailed : status;
}

} // namespace

int main(int argc, char* argv[])
{
    openStandardStreams();
    std::signal(SIGPIPE, SIG_IGN); // a closed output is told, not died of
    std::signal(SIGXFSZ, SIG_IGN); // and so is a file that must not grow
    QCoreApplication::setApplicationName(QStringLiteral("appvantor"));
    const ParsedOptions parsed = [&] {
        const QCoreApplication application(argc, argv); // which kind the process needs, the arguments tell
        return parseOptions(QCoreApplication::arguments());
    }();
    if (!parsed.options) {
        if (parsed.exitStatus == ExitSuccess) {
            Output help(false);
            help.text(parsed.text);
            return help.hasFailed() ? ExitOrderFailed : ExitSuccess;
        }
        Output::diagnostic(parsed.text);
        return parsed.exitStatus;
    }
    installMessageLog(parsed.options->logLevel);
    if (!opensWindow(*parsed.options)) {
        const QCoreApplication application(argc, argv);
        return parsed.options->subcommand == Options::Subcommand::Discover ? runDiscovery(*parsed.options)
                                                                           : runBench(*parsed.options);
    }
    const QString problem = prepareWindow(windowOptions(*parsed.options));
    if (!problem.isEmpty()) {
        Output::diagnostic(problem + QStringLiteral("; \"appvantor --help\" tells what else there is"));
        return ExitWrongUsage;
    }
    const QGuiApplication application(argc, argv);
    return runBench(*parsed.options);
}
