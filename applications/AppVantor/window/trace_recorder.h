#pragma once

#include <QObject>

#include <memory>
#include <vector>

class DTool;
class LineDevice;
class VcdTrace;

/// Records what lines do into a waveform file, from when it is told to until it is told to stop.
class TraceRecorder : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TraceRecorder)
    Q_PROPERTY(bool recording READ isRecording NOTIFY recordingChanged)
    /// The file of the last record.
    Q_PROPERTY(QString file READ file NOTIFY recordingChanged)

public:
    /// device and tools must outlive the recorder.
    TraceRecorder(const LineDevice* device, std::vector<const DTool*> tools, QObject* parent = nullptr);
    ~TraceRecorder() override;

    bool isRecording() const;
    QString file() const { return m_file; }
    /// Begins to record into file, replacing what it holds. Returns an empty text, or why it cannot be
    /// written: also that a record goes on already, which stays as it is.
    Q_INVOKABLE QString begin(const QString& file);
    /// Ends the record. Returns an empty text, or why it is not complete.
    Q_INVOKABLE QString end();

Q_SIGNALS:
    void recordingChanged();
    /// The record ended for this reason before it was told to.
    void failed(const QString& problem);

private:
    const LineDevice* const m_device;
    const std::vector<const DTool*> m_tools;
    std::unique_ptr<VcdTrace> m_trace;
    QString m_file;
};
