#include "run_shell.h"

#include "failure_report.h"
#include "junit_report.h"
#include "line_editor.h"
#include "script_reader.h"
#include "shell.h"

#include <process/exit_status.h>
#include <process/status_line.h>
#include <process/unix_signals.h>

#include <QEventLoop>

#include <algorithm>
#include <csignal>
#include <unistd.h>

namespace {

/// Returns what stands in the way of reading files, or nothing.
DWording runScripts(Shell* shell, const QStringList& files, QEventLoop* loop)
{
    UnixSignals unixSignals;
    QObject::connect(&unixSignals, &UnixSignals::interrupted, shell, [shell] {
        shell->breakOff(wording("interrupted by a signal"));
        shell->interrupt();
    });
    ScriptReader reader(shell);
    QObject::connect(&reader, &ScriptReader::ended, shell, &Shell::close);
    DWording problem = reader.begin(files);
    if (problem.isEmpty()) {
        loop->exec();
    }
    return problem;
}

void readFromTerminal(Shell* shell, Output* output, QEventLoop* loop)
{
    UnixSignals unixSignals;
    LineEditor editor(*shell);
    // Ctrl-C ends what goes on, or the line that is being typed.
    QObject::connect(&unixSignals, &UnixSignals::interrupted, shell, [&](int number) {
        if (number != SIGINT) {
            shell->abandon();
        }
        const bool isIdle = !shell->isBusy() && !shell->isInBlock();
        shell->interrupt();
        if (number == SIGINT && !editor.cancelLine() && isIdle) {
            output->text(QStringLiteral("\"quit\" or Ctrl-D ends the shell"));
        }
    });
    QObject::connect(&editor, &LineEditor::lineRead, shell, [shell](const QString& text) {
        shell->addLine({QStringLiteral("<stdin>"), 0, text});
    });
    QObject::connect(&editor, &LineEditor::ended, shell, &Shell::close);
    QObject::connect(shell, &Shell::ready, &editor, &LineEditor::prompt);
    setStatusLine([&editor] { editor.hide(); }, [&editor] { editor.show(); });
    editor.prompt();
    loop->exec();
    setStatusLine({}, {});
}

} // namespace

bool isInteractive(const Options& options)
{
    return options.words.isEmpty() && isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0 &&
           !options.json;
}

int runShell(DTool* tool, const Options& options, Output* output)
{
    const bool terminal = isInteractive(options);
    Shell shell(tool, output, {options.echo, options.keepGoing || terminal});
    QEventLoop loop;
    QObject::connect(&shell, &Shell::ended, &loop, &QEventLoop::quit);
    JUnitReport report;
    QString problem = options.report.isEmpty() ? QString() : report.begin(options.report);
    report.follow(shell);
    if (problem.isEmpty() && terminal) {
        readFromTerminal(&shell, output, &loop);
    } else if (problem.isEmpty()) {
        problem =
            runScripts(&shell, options.words.isEmpty() ? QStringList{QStringLiteral("-")} : options.words,
                       &loop)
                .english();
    }
    if (!problem.isEmpty()) {
        reportFailure("usage", {problem}, output);
        return ExitWrongUsage;
    }
    problem = options.report.isEmpty() ? QString() : report.write();
    if (!problem.isEmpty()) {
        reportFailure("report", {problem}, output);
        return std::max<int>(shell.exitStatus(), ExitOrderFailed);
    }
    return shell.exitStatus();
}
