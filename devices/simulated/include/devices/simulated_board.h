#pragma once

#include <devices/line_device.h>
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
            Refused
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
class SimulatedBoard : public LineDevice
{
    Q_OBJECT
    Q_DISABLE_COPY(SimulatedBoard)

public:
    /// scheduler must outlive the board.
    SimulatedBoard(const SimulatedBoardSetup& setup, Scheduler* scheduler, QObject* parent = nullptr);
    ~SimulatedBoard() override;

    bool hasSettableInputs() const override;
    void setInput(int line, int level) override;

    /// Plugs the board in or unplugs it.
    void setPluggedIn(bool pluggedIn);

protected:
    QString drive(int line, int level) override;
    void handleRequest(quint64 id, const QString& instruction, const QVariantMap& arguments) override;
    void handleCancel(quint64 id) override;

private:
    void setLevel(int line, int wanted);
    void settleWires();
    int carriedLevel(const SimulatedBoardSetup::Wire& wire) const;
    void carry(const SimulatedBoardSetup::Wire& wire);
    void sample(int line);
    Scheduler::Appointment later(qint64 delayUs, Scheduler::Action action);

    SimulatedBoardSetup m_setup;
    std::vector<std::vector<SimulatedBoardSetup::Wire>> m_wiresFrom;
    std::set<Scheduler::Appointment> m_appointments;
    QHash<quint64, Scheduler::Appointment> m_lateRequests;
};
