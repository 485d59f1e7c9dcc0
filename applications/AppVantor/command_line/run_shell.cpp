#include "run_shell.h"

#include "line_editor.h"
#include "shell.h"

#include <process/line_reader.h>
#include <process/status_line.h>
#include <process/unix_signals.h>

#include <QEventLoop>

#include <csignal>
#include <unistd.h>

namespace {

void readFromPipe(Shell* shell, QEventLoop* loop)
{
    LineReader reader(STDIN_FILENO, QStringLiteral("standard input"));
    QObject::connect(&reader, &LineReader::lineRead, shell, &Shell::addLine);
    QObject::connect(&reader, &LineReader::ended, shell, [shell](const QString& problem) {
        if (!problem.isEmpty()) {
            shell->refuse(problem);
        }
        shell->close();
    });
    QObject::connect(shell, &Shell::ready, &reader, &LineReader::resume);
    loop->exec();
}

void readFromTerminal(Shell* shell, QEventLoop* loop)
{
    LineEditor editor(*shell);
    QObject::connect(&editor, &LineEditor::lineRead, shell, &Shell::addLine);
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
    return isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0 && !options.json;
}

int runShell(DTool* tool, const Options& options, Output* output)
{
    Shell shell(tool, output, options.echo);
    QEventLoop loop;
    UnixSignals unixSignals;
    QObject::connect(&shell, &Shell::ended, &loop, &QEventLoop::quit);
    const bool terminal = isInteractive(options);
    // On a terminal, Ctrl-C ends what goes on, and only an idle shell; a script is ended whole.
    QObject::connect(&unixSignals, &UnixSignals::interrupted, &shell, [&shell, terminal](int number) {
        if (!terminal || number != SIGINT || !shell.isBusy()) {
            shell.abandon();
        }
        shell.interrupt();
    });
    if (terminal) {
        readFromTerminal(&shell, &loop);
    } else {
        readFromPipe(&shell, &loop);
    }
    return shell.exitStatus();
}
