#include "boards.h"

namespace {

SimulatedBoardSetup::Line line(const QString& name, DLine::Kind kind, DLine::Direction direction, int level)
{
    SimulatedBoardSetup::Line made;
    made.line.name = name;
    made.line.kind = kind;
    made.line.direction = direction;
    made.level = level;
    return made;
}

} // namespace

SimulatedBoardSetup::Line output(const QString& name)
{
    return line(name, DLine::Kind::Digital, DLine::Direction::Out, 0);
}

SimulatedBoardSetup::Line input(const QString& name, int level)
{
    return line(name, DLine::Kind::Digital, DLine::Direction::In, level);
}

SimulatedBoardSetup::Line analogOutput(const QString& name)
{
    return line(name, DLine::Kind::Analog, DLine::Direction::Out, 0);
}

SimulatedBoardSetup::Line analogInput(const QString& name, int level)
{
    return line(name, DLine::Kind::Analog, DLine::Direction::In, level);
}

SimulatedBoardSetup::Line wave(const QString& name, const Waveform& waveform)
{
    SimulatedBoardSetup::Line made = analogInput(name);
    made.waveform = waveform;
    return made;
}

SimulatedBoardSetup boardOf(const QVector<SimulatedBoardSetup::Line>& lines,
                            const QVector<SimulatedBoardSetup::Wire>& wires)
{
    SimulatedBoardSetup setup;
    setup.lines = lines;
    setup.wires = wires;
    return setup;
}

SimulatedBoardSetup digitalOutputs(int count)
{
    QVector<SimulatedBoardSetup::Line> lines;
    for (int line = 0; line < count; ++line) {
        lines.append(output("line%1"_s.arg(line)));
    }
    return boardOf(lines);
}
