#pragma once

#include "script_reader.h"
#include "shell.h"

/// Carries out the lines of a file, as a shell does, beside whatever else the event loop does. Listening
/// orders go on after the last line.
class OrderFile
{
public:
    /// tool and output must outlive this.
    OrderFile(DTool* tool, Output* output);
    Q_DISABLE_COPY(OrderFile)

    /// Begins to read file. Returns an empty text, or why it cannot be read.
    QString begin(const QString& file) { return m_reader.begin({file}); }
    /// Forgets the lines that are left and stops what still runs. Returns the exit status of what happened.
    int end();

private:
    Shell m_shell;
    ScriptReader m_reader;
    bool m_ended = false; ///< by a line, or because nothing can be written any more
};
