#include "trace_recorder.h"

#include "texts.h"

#include <trace/vcd_trace.h>

TraceRecorder::TraceRecorder(const LineDevice* device, std::vector<const DTool*> tools, QObject* parent)
    : QObject(parent)
    , m_device(device)
    , m_tools(std::move(tools))
{}

TraceRecorder::~TraceRecorder() = default;

bool TraceRecorder::isRecording() const
{
    return m_trace != nullptr && m_trace->problem().isEmpty();
}

QString TraceRecorder::begin(const QString& file)
{
    if (file == QLatin1String("-")) {
        return qtTrId("save_no_file").arg(file);
    }
    if (isRecording()) {
        return qtTrId("record_runs");
    }
    auto trace = std::make_unique<VcdTrace>(*m_device);
    const DWording problem = trace->begin(file, m_tools);
    if (problem.isEmpty()) {
        m_trace = std::move(trace);
        m_file = file;
        connect(m_trace.get(), &VcdTrace::failed, this, [this](const DWording& reason) {
            Q_EMIT recordingChanged();
            Q_EMIT failed(worded(reason));
        });
        Q_EMIT recordingChanged();
    }
    return worded(problem);
}

QString TraceRecorder::end()
{
    if (m_trace == nullptr) {
        return QString();
    }
    m_trace->disconnect(this);
    const DWording problem = m_trace->end();
    m_trace.reset();
    Q_EMIT recordingChanged();
    return worded(problem);
}
