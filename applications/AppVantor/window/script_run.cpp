#include "script_run.h"

#include "files.h"
#include "texts.h"

ScriptRun::ScriptRun(BenchSource* source, QObject* parent)
    : QObject(parent)
    , m_source(source)
{
    constexpr int readableMs = 50;
    m_showing.setSingleShot(true);
    m_showing.setInterval(readableMs);
    connect(&m_showing, &QTimer::timeout, this, &ScriptRun::changed);
    m_source->watchScript({[this](const ScriptPlace& line) { showLine(line); },
                           [this](const Problem& complaint) { showEnd(complaint); }});
}

ScriptRun::~ScriptRun()
{
    m_source->watchScript({});
}

void ScriptRun::begin(QObject* tool, const QString& file)
{
    auto* chosen = qobject_cast<DTool*>(tool);
    if (chosen == nullptr) {
        return;
    }
    const QString path = Files().path(file);
    m_running = true;
    m_line = {path, 0, {}};
    m_outcome.clear();
    const DWording problem = m_source->beginScript(chosen, path);
    if (!problem.isEmpty()) {
        showEnd({problem});
    }
    Q_EMIT changed();
}

void ScriptRun::stop()
{
    if (m_running) {
        m_running = false;
        m_source->stopScript();
        m_failed = false;
        m_outcome = qtTrId("script_stopped").arg(m_line.number);
        Q_EMIT changed();
    }
}

void ScriptRun::dismiss()
{
    m_outcome.clear();
    Q_EMIT changed();
}

void ScriptRun::showLine(const ScriptPlace& line)
{
    m_running = true;
    m_line = line;
    m_outcome.clear();
    if (!m_showing.isActive()) {
        m_showing.start();
    }
}

void ScriptRun::showEnd(const Problem& complaint)
{
    m_showing.stop();
    m_running = false;
    m_failed = !complaint.text.isEmpty();
    m_outcome = m_failed ? complaint.toString(worded(complaint.text)) : qtTrId("script_done");
    Q_EMIT changed();
}
