#include "order_file.h"

#include <QEventLoop>

#include <utility>

OrderFile::OrderFile(DTool* tool, Output* output)
    : m_shell(tool, output, {false, false})
    , m_reader(&m_shell)
{
    connect(&m_shell, &Shell::lineBegun, this, &OrderFile::lineBegun);
    connect(&m_shell, &Shell::lineFailed, this, &OrderFile::noteFailure);
    connect(&m_shell, &Shell::expectationEnded, this,
            [this](const ScriptLine& line, double, const DWording& complaint) {
                if (!complaint.isEmpty()) {
                    noteFailure(line, complaint);
                }
            });
    connect(&m_reader, &ScriptReader::ended, this, &OrderFile::endLines);
    connect(&m_shell, &Shell::ended, this, [this, output] {
        m_ended = true;
        if (m_complaint.text.isEmpty() && output->hasFailed()) {
            m_complaint.text = wording("standard output cannot be written to");
        }
        endLines();
    });
}

int OrderFile::end()
{
    if (!m_ended) {
        QEventLoop loop;
        connect(&m_shell, &Shell::ended, &loop, &QEventLoop::quit);
        m_shell.abandon();
        m_shell.interrupt();
        if (!m_ended) {
            loop.exec(QEventLoop::ExcludeUserInputEvents); // a window waits with what it began
        }
    }
    return m_shell.exitStatus();
}

void OrderFile::noteFailure(const ScriptLine& line, const DWording& reason)
{
    if (m_complaint.text.isEmpty()) {
        m_complaint = line.told(reason);
    }
}

void OrderFile::endLines()
{
    if (!std::exchange(m_areLinesEnded, true)) {
        Q_EMIT linesEnded(m_complaint);
    }
}
