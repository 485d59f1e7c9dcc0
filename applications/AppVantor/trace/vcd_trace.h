#pragma once

#include <devices/line.h>
#include <plugin_management/d_scheduler.h>
#include <plugin_management/d_wording.h>
#include <process/outlet.h>

#include <memory>
#include <string>
#include <vector>

class DTool;
class LineDevice;

/// Records the level changes of a device's lines as a Value Change Dump with a timescale of 1 µs, from the
/// date that it names: digital lines as wires, analogue ones as reals, unknown levels as "x" and "nan". What
/// was recorded is in the file a tenth of a second later at most, so that it can be read even if the process
/// is killed. It waits for no reader: a gap that one leaves is marked, with the number of changes lost, as is
/// one that the device leaves.
class Q_DECL_EXPORT VcdTrace : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(VcdTrace)

public:
    explicit VcdTrace(const LineDevice& device, QObject* parent = nullptr);
    /// Writes what is left; a signal ends that.
    ~VcdTrace() override;

    /// Begins the record in file ("-" for standard output), replacing what it holds. The lines stand in the
    /// scope "device", and those that channels are linked to once more in a scope of their tool, by the names
    /// of the channels. Returns an empty text, or why the file cannot be written.
    DWording begin(const QString& file, const std::vector<const DTool*>& tools = {});
    /// Ends the record. Returns what is left of it, for Outlet::drain; null for nothing. The file is closed
    /// as soon as it is written out.
    Outlet* finish();
    /// The same, and writes it out; a signal ends that. Returns the problem.
    DWording end();
    /// Empty, or why the record is not complete.
    const DWording& problem() const { return m_problem; }

Q_SIGNALS:
    /// The file could not be written any further; the record ends there.
    void failed(const DWording& problem);

private:
    /// A line as the dump knows it.
    struct Variable
    {
        std::string code;
        bool isReal;
    };

    void record(int line, const LineLevel& level);
    void appendVariable(int line, const QString& name);
    void appendScope(const DTool& tool, const QString& name);
    void append(int line, const LineLevel& level);
    void appendAll();
    bool moveTo(qint64 timeUs);
    void appendTime();
    void recordGap(quint64 changes, qint64 fromUs, qint64 untilUs);
    void lose(quint64 changes);
    void endGap();
    void writeLater();
    void write();
    void fail(const DWording& problem);
    void closeFile();

    const LineDevice& m_device;
    DWording m_fileName;
    int m_file = -1;
    std::unique_ptr<Outlet> m_outlet; ///< while the record goes on
    std::string m_buffer;
    DScheduler::Appointment m_writing;
    std::vector<Variable> m_variables;
    qint64 m_startUs = 0;
    qint64 m_timeUs = 0; ///< of the last change, since the start
    quint64 m_lost = 0;  ///< changes lost in the present gap; 0 outside of one
    DWording m_problem;
};
