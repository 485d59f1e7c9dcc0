#include <devices/simulated_board.h>

#include <algorithm>

using Wire = SimulatedBoardSetup::Wire;
using Fault = SimulatedBoardSetup::Fault;

namespace {

const QString& unplugged()
{
    static const QString reason = QStringLiteral("the simulated board is unplugged");
    return reason;
}

} // namespace

SimulatedBoard::SimulatedBoard(const SimulatedBoardSetup& setup, Scheduler* scheduler, QObject* parent)
    : LineDevice(QStringLiteral("Simulated board"), scheduler, parent)
    , m_setup(setup)
    , m_wiresFrom(static_cast<std::size_t>(setup.lines.size()))
{
    QVector<DLine> lines;
    for (const SimulatedBoardSetup::Line& line : setup.lines) {
        lines.append(line.line);
    }
    setLines(lines);
    for (int line = 0; line < lines.size(); ++line) {
        setLevel(line, setup.lines.at(line).level);
    }
    for (const Wire& wire : setup.wires) {
        m_wiresFrom.at(static_cast<std::size_t>(wire.from)).push_back(wire);
    }
    settleWires();
    for (int line = 0; line < lines.size(); ++line) {
        if (setup.lines.at(line).waveform) {
            sample(line);
        }
    }
    setPluggedIn(setup.connected);
}

SimulatedBoard::~SimulatedBoard()
{
    for (const Scheduler::Appointment& appointment : m_appointments) {
        scheduler()->cancel(appointment);
    }
}

bool SimulatedBoard::hasSettableInputs() const
{
    return true;
}

void SimulatedBoard::setInput(int line, int level)
{
    const QVector<DLine> all = lines();
    if (line >= 0 && line < all.size() && all.at(line).direction == DLine::Direction::In) {
        setLevel(line, level);
    }
}

void SimulatedBoard::setPluggedIn(bool pluggedIn)
{
    if (pluggedIn) {
        setConnected();
    } else {
        setDisconnected(unplugged());
    }
}

QString SimulatedBoard::drive(int line, int level)
{
    setLevel(line, level);
    return QString();
}

void SimulatedBoard::handleRequest(quint64 id, const QString& instruction, const QVariantMap& arguments)
{
    const QString channel = arguments.value(QStringLiteral("channel")).toString();
    const auto fault =
        std::find_if(m_setup.faults.cbegin(), m_setup.faults.cend(), [&](const Fault& candidate) {
            return (candidate.line.isEmpty() || candidate.line == channel) &&
                   (candidate.instruction.isEmpty() || candidate.instruction == instruction);
        });
    if (fault == m_setup.faults.cend()) {
        LineDevice::handleRequest(id, instruction, arguments);
        return;
    }
    switch (fault->kind) {
    case Fault::Kind::Silent:
        break;
    case Fault::Kind::Late:
        m_lateRequests.insert(id, later(fault->delayUs, [this, id, instruction, arguments] {
                                  m_lateRequests.remove(id);
                                  LineDevice::handleRequest(id, instruction, arguments);
                              }));
        break;
    case Fault::Kind::Wrong:
        reply(id, {{QStringLiteral("garbled"), true}});
        break;
    case Fault::Kind::Refused:
        fail(id,
             channel.isEmpty()
                 ? QStringLiteral("the board refuses \"%1\"").arg(instruction)
                 : QStringLiteral("the board refuses \"%1\" of channel \"%2\"").arg(instruction, channel));
        break;
    }
}

void SimulatedBoard::handleCancel(quint64 id)
{
    const auto late = m_lateRequests.constFind(id);
    if (late != m_lateRequests.constEnd()) {
        scheduler()->cancel(*late);
        m_appointments.erase(*late);
        m_lateRequests.erase(late);
    }
    LineDevice::handleCancel(id);
}

/// Cut to what the line can have.
void SimulatedBoard::setLevel(int line, int wanted)
{
    const int level = std::clamp(wanted, 0, highestLevel(m_setup.lines.at(line).line));
    if (level == this->level(line)) {
        return;
    }
    lineChanged(line, level, scheduler()->now());
    for (const Wire& wire : m_wiresFrom.at(static_cast<std::size_t>(line))) {
        carry(wire);
    }
}

/// Gives every line the level that its wire carries at the start, when nothing is under way. Lines that no
/// wire feeds come first, and each line before those that it feeds.
void SimulatedBoard::settleWires()
{
    const int count = lines().size();
    std::vector<bool> fed(static_cast<std::size_t>(count), false);
    for (const Wire& wire : qAsConst(m_setup.wires)) {
        fed.at(static_cast<std::size_t>(wire.to)) = true;
    }
    std::vector<int> settled;
    for (int line = 0; line < count; ++line) {
        if (!fed.at(static_cast<std::size_t>(line))) {
            settled.push_back(line);
        }
    }
    while (!settled.empty()) {
        const int line = settled.back();
        settled.pop_back();
        for (const Wire& wire : m_wiresFrom.at(static_cast<std::size_t>(line))) {
            lineChanged(wire.to, carriedLevel(wire), scheduler()->now());
            settled.push_back(wire.to);
        }
    }
}

/// A wire between lines of two kinds carries the lower half of the analogue levels as 0.
int SimulatedBoard::carriedLevel(const Wire& wire) const
{
    const int highestFrom = highestLevel(m_setup.lines.at(wire.from).line);
    const int highestTo = highestLevel(m_setup.lines.at(wire.to).line);
    const int level = wire.inverted ? highestFrom - this->level(wire.from) : this->level(wire.from);
    if (highestFrom == highestTo) {
        return level;
    }
    return level > highestFrom / 2 ? highestTo : 0;
}

void SimulatedBoard::carry(const Wire& wire)
{
    const int level = carriedLevel(wire);
    const int line = wire.to;
    if (wire.delayUs == 0) {
        setLevel(line, level);
    } else {
        later(wire.delayUs, [this, line, level] { setLevel(line, level); });
    }
}

/// Samples fall on multiples of the interval, so that late calls do not add up.
void SimulatedBoard::sample(int line)
{
    const Waveform& waveform = *m_setup.lines.at(line).waveform;
    const qint64 now = scheduler()->now();
    const qint64 sampleUs = now - now % waveform.intervalUs;
    setLevel(line, waveform.level(sampleUs));
    if (waveform.shape != Waveform::Shape::Constant) {
        later(sampleUs + waveform.intervalUs - now, [this, line] { sample(line); });
    }
}

Scheduler::Appointment SimulatedBoard::later(qint64 delayUs, Scheduler::Action action)
{
    // The board cancels what is still open when it goes.
    auto appointment = std::make_shared<Scheduler::Appointment>();
    *appointment =
        scheduler()->at(scheduler()->now() + delayUs, [this, appointment, run = std::move(action)] {
            m_appointments.erase(*appointment);
            run();
        });
    m_appointments.insert(*appointment);
    return *appointment;
}
