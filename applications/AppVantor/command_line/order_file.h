#pragma once

#include "script_reader.h"
#include "shell.h"

/// Carries out the lines of a file, as a shell does, beside whatever else the event loop does. Listening
/// orders go on after the last line.
class OrderFile : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(OrderFile)

public:
    /// tool and output must outlive this.
    OrderFile(DTool* tool, Output* output);

    /// Begins to read file. Returns nothing, or why it cannot be read.
    DWording begin(const QString& file) { return m_reader.begin({file}); }
    /// Number of orders that have not ended.
    int runningOrders() const { return m_shell.runningOrders(); }
    /// Forgets the lines that are left and stops what still runs. Returns the exit status of what happened.
    int end();

Q_SIGNALS:
    /// The next line is carried out.
    void lineBegun(const ScriptLine& line);
    /// All lines are done, or, where complaint has a text, one has failed: it tells file, line and why.
    void linesEnded(const Problem& complaint);

private:
    void noteFailure(const ScriptLine& line, const DWording& reason);
    void endLines();

    Shell m_shell;
    ScriptReader m_reader;
    Problem m_complaint; ///< of the first failure
    bool m_areLinesEnded = false;
    bool m_ended = false; ///< by a line, or because nothing can be written any more
};
