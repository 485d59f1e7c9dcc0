#pragma once

#include <QObject>
#include <QSocketNotifier>

class Shell;

/// Reads lines from a terminal with a prompt, history and completion, from the event loop. There is one of it
/// at a time. It waits for no terminal that stands still: the prompt comes when that takes output again.
class LineEditor : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(LineEditor)

public:
    /// shell tells the completions.
    explicit LineEditor(const Shell& shell, QObject* parent = nullptr);
    ~LineEditor() override;

    /// Asks for the next line.
    void prompt();
    /// Forgets what was typed, and asks anew. Returns true when there was something.
    bool cancelLine();
    /// Takes the prompt away, so that a line can be written in its place.
    void hide();
    /// Brings the prompt back, with what was typed.
    void show();

    const Shell& shell() const { return m_shell; }

Q_SIGNALS:
    void lineRead(const QString& line);
    void ended();

private:
    static void takeLine(char* line);
    void readMore();
    void stopPrompting();

    const Shell& m_shell;
    QSocketNotifier m_input;
    QSocketNotifier m_room; ///< while the prompt waits for the terminal
    QString m_historyFile;
    bool m_prompting = false;
    bool m_typed = false;     ///< something, since the prompt came
    bool m_installed = false; ///< the line editing library reads the line
};
