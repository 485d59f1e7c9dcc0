#pragma once

#include <devices/line_device.h>
#include <devices/line_engine.h>
#include <devices/waveform.h>

#include <optional>

/// How a simulated board is built.
struct SimulatedBoardSetup
{
    struct Line
    {
        DLine line;
        int level = 0;                    ///< at the start
        std::optional<Waveform> waveform; ///< of an analogue input
    };

    /// A connection that carries the level of one line to an input line.
    struct Wire
    {
        int from = 0;
        int to = 0;
        qint64 delayUs = 0;
        bool inverted = false;
    };

    /// A defect: what the board does to the requests that match.
    struct Fault
    {
        enum class Kind
        {
            Silent,
            Late,
            Wrong,
            Refused,
            Count
        };

        Kind kind = Kind::Silent;
        QString line;        ///< empty: any line
        QString instruction; ///< empty: any instruction
        qint64 delayUs = 0;  ///< of a late answer
    };

    QVector<Line> lines;
    /// No loops, and one wire at most to a line.
    QVector<Wire> wires;
    QVector<Fault> faults;
    bool connected = true;
};

/// The built-in board: lines in memory, wires between them, waveforms on analogue inputs, and defects on
/// demand.
class SimulatedBoard : public LineEngine
{
public:
    /// scheduler and listener must outlive the board.
    SimulatedBoard(const SimulatedBoardSetup& setup, DScheduler* scheduler, LineListener* listener);
    ~SimulatedBoard() override;
    Q_DISABLE_COPY(SimulatedBoard)

    void open() override;
    void request(quint64 id, const QString& instruction, const QVariantMap& arguments) override;
    void cancel(quint64 id) override;
    void setInput(int line, int level) override;
    void setPluggedIn(bool pluggedIn) override;

    /// The lines of such a board; those that neither a wire nor a waveform feeds can be set.
    static QVector<DLine> linesOf(const SimulatedBoardSetup& setup);

protected:
    DFailure drive(int line, int level, qint64 timeUs) override;

private:
    void propagate(int line, int wanted, qint64 dueUs, qint64 timeUs);
    void settleWires();
    int carriedLevel(const SimulatedBoardSetup::Wire& wire) const;
    void sample(int line);
    DScheduler::Appointment at(qint64 timeUs, DScheduler::Action action);

    const SimulatedBoardSetup m_setup;
    const qint64 m_startUs;
    bool m_pluggedIn;
    std::vector<std::vector<SimulatedBoardSetup::Wire>> m_wiresFrom;
    std::set<DScheduler::Appointment> m_appointments;
    QHash<quint64, DScheduler::Appointment> m_lateRequests;
};

/// Makes a simulated board behind its front, closed; see LineDevice. Its outputs end as those of the device
/// that it stands for, where it stands for one.
std::unique_ptr<LineDevice> makeSimulatedBoard(const SimulatedBoardSetup& setup, DScheduler* scheduler,
                                               DevicePlace place,
                                               OutputsAtEnd outputsAtEnd = OutputsAtEnd::Vanish);
