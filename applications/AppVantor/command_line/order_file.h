#pragma once

#include "shell.h"

#include <process/line_reader.h>

#include <memory>

/// Carries out the lines of a file, as a shell does, beside whatever else the event loop does. Listening
/// orders go on after the last line.
class OrderFile
{
public:
    /// tool and output must outlive this.
    OrderFile(DTool* tool, Output* output);
    ~OrderFile();
    Q_DISABLE_COPY(OrderFile)

    /// Begins to read file. Returns an empty text, or why it cannot be read.
    QString begin(const QString& file);
    /// Forgets the lines that are left and stops what still runs. Returns the exit status of what happened.
    int end();

private:
    Shell m_shell;
    bool m_ended = false; ///< by a line, or because nothing can be written any more
    int m_descriptor = -1;
    std::unique_ptr<LineReader> m_reader;
};
