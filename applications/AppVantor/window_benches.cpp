#include "window_benches.h"

#include <command_line/failure_report.h>
#include <process/exit_status.h>

#include <algorithm>

WindowBenches::WindowBenches(std::unique_ptr<Operation> first, const Options& options, DevicePlace place,
                             Output* output)
    : m_options(options)
    , m_place(place)
    , m_output(output)
    , m_operation(std::move(first))
{}

std::unique_ptr<Bench> WindowBenches::make(const QString& configuration, QVector<Problem>* mistakes)
{
    return readBench(configuration, m_place, mistakes);
}

void WindowBenches::exchange(std::unique_ptr<Bench> next)
{
    leaveBench();
    if (!m_operation->trace().end().isEmpty()) {
        m_status = std::max<int>(m_status, ExitOrderFailed);
    }
    m_operation.reset(); // it may hold the lines that the next one wants
    m_options.trace.clear();
    m_operation = std::make_unique<Operation>(std::move(next), m_output);
    const DWording problem = m_operation->begin(m_options);
    if (!problem.isEmpty()) {
        reportFailure("usage", {problem}, m_output);
        m_status = std::max<int>(m_status, ExitWrongUsage);
    }
}

int WindowBenches::end(int status)
{
    leaveBench();
    return writeOut(std::max(status, m_status), m_output, &m_operation->trace());
}

DWording WindowBenches::beginScript(DTool* tool, const QString& file)
{
    stopScript();
    m_script = std::make_unique<OrderFile>(tool, m_output);
    QObject::connect(m_script.get(), &OrderFile::lineBegun, m_script.get(), [this](const ScriptLine& line) {
        if (m_watch.lineBegun) {
            m_watch.lineBegun({line.file, line.number, line.text});
        }
    });
    QObject::connect(m_script.get(), &OrderFile::linesEnded, m_script.get(),
                     [this](const Problem& complaint) {
                         if (m_watch.ended) {
                             m_watch.ended(complaint);
                         }
                     });
    return m_script->begin(file);
}

void WindowBenches::stopScript()
{
    if (m_script != nullptr) {
        m_script->blockSignals(true);
        m_status = std::max(m_status, m_script->end());
        m_script.reset();
    }
}

void WindowBenches::leaveBench()
{
    stopScript();
    m_status = std::max(m_status, m_operation->end(m_options));
}
