#include "boards.h"

namespace {

SimulatedBoardSetup::Line line(const QString& name, DLine::Kind kind, DLine::Direction direction, int level)
{
    SimulatedBoardSetup::Line made;
    made.line = {name, kind, direction};
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

SimulatedBoardSetup boardOf(const QVector<SimulatedBoardSetup::Line>& lines)
{
    SimulatedBoardSetup setup;
    setup.lines = lines;
    return setup;
}
