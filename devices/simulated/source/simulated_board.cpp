#include <devices/simulated_board.h>

#include <algorithm>

using Wire = SimulatedBoardSetup::Wire;
using Fault = SimulatedBoardSetup::Fault;

QVector<DLine> SimulatedBoard::linesOf(const SimulatedBoardSetup& setup)
{
    QVector<DLine> lines;
    for (const SimulatedBoardSetup::Line& line : setup.lines) {
        lines.append(line.line);
        lines.last().settable = line.line.direction == DLine::Direction::In && !line.waveform;
    }
    for (const Wire& wire : setup.wires) {
        lines[wire.to].settable = false;
    }
    return lines;
}

SimulatedBoard::SimulatedBoard(const SimulatedBoardSetup& setup, DScheduler* scheduler,
                               LineListener* listener)
    : LineEngine(linesOf(setup), scheduler, listener)
    , m_setup(setup)
    , m_startUs(scheduler->now())
    , m_pluggedIn(setup.connected)
    , m_wiresFrom(static_cast<std::size_t>(setup.lines.size()))
{
    for (int line = 0; line < lines().size(); ++line) {
        const int level = setup.lines.at(line).level;
        setLevel(line, std::clamp(level, 0, lines().at(line).highestLevel()), m_startUs);
    }
    for (const Wire& wire : setup.wires) {
        m_wiresFrom.at(static_cast<std::size_t>(wire.from)).push_back(wire);
    }
    settleWires();
    for (int line = 0; line < lines().size(); ++line) {
        if (setup.lines.at(line).waveform) {
            sample(line);
        }
    }
}

SimulatedBoard::~SimulatedBoard()
{
    for (const DScheduler::Appointment& appointment : m_appointments) {
        scheduler()->cancel(appointment);
    }
}

void SimulatedBoard::open()
{
    if (m_pluggedIn) {
        setConnected(scheduler()->now());
    } else {
        setUnreachable(wording("the simulated board is unplugged"));
    }
}

void SimulatedBoard::setPluggedIn(bool pluggedIn)
{
    if (pluggedIn == m_pluggedIn) {
        return;
    }
    m_pluggedIn = pluggedIn;
    if (state() != DDevice::State::Closed) {
        open();
    }
}

void SimulatedBoard::setInput(int line, int level)
{
    const qint64 timeUs = scheduler()->now();
    propagate(line, level, timeUs, timeUs);
}

DFailure SimulatedBoard::drive(int line, int level, qint64 timeUs)
{
    propagate(line, level, timeUs, timeUs);
    return DFailure();
}

void SimulatedBoard::request(quint64 id, const QString& instruction, const QVariantMap& arguments)
{
    if (m_setup.faults.isEmpty() || !isConnected()) {
        LineEngine::request(id, instruction, arguments);
        return;
    }
    const QString channel = arguments.value(QStringLiteral("channel")).toString();
    const auto fault =
        std::find_if(m_setup.faults.cbegin(), m_setup.faults.cend(), [&](const Fault& candidate) {
            return (candidate.line.isEmpty() || candidate.line == channel) &&
                   (candidate.instruction.isEmpty() || candidate.instruction == instruction);
        });
    if (fault == m_setup.faults.cend()) {
        LineEngine::request(id, instruction, arguments);
        return;
    }
    switch (fault->kind) {
    case Fault::Kind::Silent:
    case Fault::Kind::Count:
        break;
    case Fault::Kind::Late:
        m_lateRequests.insert(id, at(scheduler()->now() + fault->delayUs, [this, id, instruction, arguments] {
                                  m_lateRequests.remove(id);
                                  LineEngine::request(id, instruction, arguments);
                              }));
        break;
    case Fault::Kind::Wrong:
        listener().requestAnswered(id, {{QStringLiteral("garbled"), true}}, scheduler()->now());
        break;
    case Fault::Kind::Refused:
        refuse(id, channel.isEmpty()
                       ? wording(R"(the board refuses "%1")").arg(instruction)
                       : wording(R"(the board refuses "%1" of channel "%2")").arg(instruction, channel));
        break;
    }
}

void SimulatedBoard::cancel(quint64 id)
{
    const auto late = m_lateRequests.constFind(id);
    if (late != m_lateRequests.constEnd()) {
        scheduler()->cancel(*late);
        m_appointments.erase(*late);
        m_lateRequests.erase(late);
    }
    LineEngine::cancel(id);
}

/// Gives a line a level, cut to what it can have, and follows the wires from there, each to its end before
/// the next: a chain may be as long as the board has lines. Delays are reckoned from when the change was due,
/// so that late calls do not add up.
void SimulatedBoard::propagate(int line, int wanted, qint64 dueUs, qint64 timeUs)
{
    struct Step
    {
        int line;
        int wanted;
    };
    std::vector<Step> steps = {{line, wanted}};
    while (!steps.empty()) {
        const Step step = steps.back();
        steps.pop_back();
        const int level = std::clamp(step.wanted, 0, lines().at(step.line).highestLevel());
        if (level == this->level(step.line)) {
            continue;
        }
        setLevel(step.line, level, timeUs);
        const std::vector<Wire>& wires = m_wiresFrom.at(static_cast<std::size_t>(step.line));
        for (auto wire = wires.crbegin(); wire != wires.crend(); ++wire) {
            const Step next = {wire->to, carriedLevel(*wire)};
            if (wire->delayUs == 0) {
                steps.push_back(next);
            } else {
                const qint64 nextUs = dueUs + wire->delayUs;
                at(nextUs,
                   [this, next, nextUs] { propagate(next.line, next.wanted, nextUs, scheduler()->now()); });
            }
        }
    }
}

/// Gives every line the level that its wire carries at the start, when nothing is under way. Lines that no
/// wire feeds come first, and each line before those that it feeds.
void SimulatedBoard::settleWires()
{
    const int count = lines().size();
    std::vector<bool> fed(static_cast<std::size_t>(count), false);
    for (const Wire& wire : m_setup.wires) {
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
            setLevel(wire.to, carriedLevel(wire), m_startUs);
            settled.push_back(wire.to);
        }
    }
}

/// A wire between lines of two kinds carries the lower half of the analogue levels as 0.
int SimulatedBoard::carriedLevel(const Wire& wire) const
{
    const int highestFrom = lines().at(wire.from).highestLevel();
    const int highestTo = lines().at(wire.to).highestLevel();
    const int level = wire.inverted ? highestFrom - this->level(wire.from) : this->level(wire.from);
    if (highestFrom == highestTo) {
        return level;
    }
    return level > highestFrom / 2 ? highestTo : 0;
}

/// Samples fall on multiples of the interval since the start, so that late calls do not add up.
void SimulatedBoard::sample(int line)
{
    const Waveform& waveform = *m_setup.lines.at(line).waveform;
    const qint64 timeUs = scheduler()->now();
    const qint64 elapsedUs = timeUs - m_startUs;
    const qint64 sampleUs = elapsedUs - elapsedUs % waveform.intervalUs;
    const qint64 dueUs = m_startUs + sampleUs;
    propagate(line, waveform.level(sampleUs), dueUs, timeUs);
    if (waveform.shape != Waveform::Shape::Constant) {
        at(dueUs + waveform.intervalUs, [this, line] { sample(line); });
    }
}

DScheduler::Appointment SimulatedBoard::at(qint64 timeUs, DScheduler::Action action)
{
    // The board cancels what is still open when it goes.
    auto appointment = std::make_shared<DScheduler::Appointment>();
    *appointment = scheduler()->at(timeUs, [this, appointment, run = std::move(action)] {
        m_appointments.erase(*appointment);
        run();
    });
    m_appointments.insert(*appointment);
    return *appointment;
}

std::unique_ptr<LineDevice> makeSimulatedBoard(const SimulatedBoardSetup& setup, DScheduler* scheduler,
                                               DevicePlace place, OutputsAtEnd outputsAtEnd)
{
    return std::make_unique<LineDevice>(
        QStringLiteral("Simulated board"), SimulatedBoard::linesOf(setup), scheduler, place,
        [setup](DScheduler* clock, LineListener* listener) {
            return std::make_unique<SimulatedBoard>(setup, clock, listener);
        },
        outputsAtEnd);
}
