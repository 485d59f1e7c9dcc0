#include "line_editor.h"

#include "shell.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <editline/readline.h>
#include <poll.h>
#include <unistd.h>

namespace {

constexpr int c_longestHistory = 1000;

/// The editor that the line editing library calls back: its functions take no context.
LineEditor* active = nullptr;

char* nextCompletion(const char* word, int state)
{
    static QStringList completions;
    if (state == 0) {
        const int start = static_cast<int>(rl_point) - static_cast<int>(std::strlen(word));
        const QString before = QString::fromUtf8(rl_line_buffer, qMax(0, start));
        completions = active->shell().completions(before.split(QLatin1Char(' '), Qt::SkipEmptyParts),
                                                  QString::fromUtf8(word));
        // What ends with "=" goes on.
        const bool goesOn = completions.size() == 1 && completions.first().endsWith(QLatin1Char('='));
        rl_completion_append_character = goesOn ? 0 : static_cast<int>(' ');
    }
    return state < completions.size() ? strdup(completions.at(state).toUtf8().constData()) : nullptr;
}

char** complete(const char* word, int start, int end)
{
    Q_UNUSED(start)
    Q_UNUSED(end)
    rl_attempted_completion_over = 1; // never file names
    return rl_completion_matches(word, nextCompletion);
}

/// The line editing library takes no notice of it, and would be called back without end.
bool isTerminalGone()
{
    struct pollfd input = {STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, 0) == 1 && (input.revents & POLLHUP) != 0;
}

/// The line editing library would wait for a terminal that stands still.
bool takesOutput()
{
    struct pollfd output = {STDOUT_FILENO, POLLOUT, 0};
    return poll(&output, 1, 0) == 1;
}

void endLine()
{
    if (takesOutput()) {
        std::fputc('\n', stdout);
    }
}

} // namespace

LineEditor::LineEditor(const Shell& shell, QObject* parent)
    : QObject(parent)
    , m_shell(shell)
    , m_input(STDIN_FILENO, QSocketNotifier::Read)
    , m_room(STDOUT_FILENO, QSocketNotifier::Write)
    , m_historyFile(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) +
                    QStringLiteral("/history"))
{
    active = this;
    static char name[] = "appvantor";
    static char wordBreaks[] = " \t\n";
    rl_readline_name = name;
    rl_basic_word_break_characters = wordBreaks;
    rl_attempted_completion_function = complete;
    using_history();
    read_history(m_historyFile.toLocal8Bit().constData());
    stifle_history(c_longestHistory);
    m_input.setEnabled(false);
    m_room.setEnabled(false);
    connect(&m_input, &QSocketNotifier::activated, this, &LineEditor::readMore);
    connect(&m_room, &QSocketNotifier::activated, this, &LineEditor::show);
}

LineEditor::~LineEditor()
{
    if (m_prompting) {
        endLine();
    }
    stopPrompting();
    QDir().mkpath(QFileInfo(m_historyFile).path());
    write_history(m_historyFile.toLocal8Bit().constData());
    active = nullptr;
}

void LineEditor::prompt()
{
    if (!m_prompting) {
        m_prompting = true;
        m_typed = false;
        show();
    }
}

bool LineEditor::cancelLine()
{
    const bool typed = m_prompting && m_typed;
    if (m_prompting) {
        stopPrompting();
        if (takesOutput()) {
            std::fputs("^C\n", stdout);
        }
        prompt();
    }
    return typed;
}

void LineEditor::hide()
{
    if (m_prompting && takesOutput()) {
        std::fputs("\r\033[K", stdout);
        std::fflush(stdout); // what follows may go to standard error
    }
}

void LineEditor::show()
{
    const bool shows = m_prompting && takesOutput();
    m_input.setEnabled(shows);
    m_room.setEnabled(m_prompting && !shows);
    if (shows && m_installed) {
        rl_forced_update_display();
    } else if (shows) {
        m_installed = true;
        rl_callback_handler_install(m_shell.isInBlock() ? "  ... " : "gpio> ", takeLine);
    }
}

void LineEditor::readMore()
{
    if (isTerminalGone()) {
        stopPrompting();
        Q_EMIT ended();
    } else if (takesOutput()) {
        m_typed = true;
        rl_callback_read_char();
    } else {
        show();
    }
}

void LineEditor::stopPrompting()
{
    m_prompting = false;
    m_input.setEnabled(false);
    m_room.setEnabled(false);
    if (m_installed) {
        m_installed = false;
        rl_callback_handler_remove();
    }
}

void LineEditor::takeLine(char* line)
{
    LineEditor* editor = active;
    editor->stopPrompting();
    if (line == nullptr) {
        endLine();
        Q_EMIT editor->ended();
        return;
    }
    const QString text = QString::fromUtf8(line);
    if (!text.trimmed().isEmpty()) {
        add_history(line);
    }
    std::free(line);
    Q_EMIT editor->lineRead(text);
}
