#pragma once

#include <QFile>
#include <QObject>
#include <QTimer>

#include <string>
#include <vector>

class LineDevice;

/// Records the level changes of a device's lines as a Value Change Dump with a timescale of 1 µs: digital
/// lines as wires, analogue ones as reals. What was recorded is in the file a tenth of a second later at
/// most, so that it can be read even if the process is killed.
class VcdTrace : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(VcdTrace)

public:
    explicit VcdTrace(const LineDevice& device, QObject* parent = nullptr);
    /// Writes what is left.
    ~VcdTrace() override;

    /// Begins the record in file, replacing what it holds. Returns an empty text, or why the file cannot be
    /// written.
    QString begin(const QString& file);
    /// Writes what is left. Returns an empty text, or why the record is not complete.
    QString end();

Q_SIGNALS:
    /// The file could not be written any further; the record ends there.
    void failed(const QString& problem);

private:
    /// A line as the dump knows it.
    struct Variable
    {
        std::string code;
        bool isReal;
    };

    void record(int line, int level, qint64 timeUs);
    void append(int line, int level);
    void appendTime(qint64 timeUs);
    void write();
    void fail(const QString& problem);

    const LineDevice& m_device;
    QString m_fileName;
    QFile m_file;
    std::string m_buffer;
    QTimer m_writing;
    std::vector<Variable> m_variables;
    qint64 m_timeUs = 0;
    QString m_problem;
};
