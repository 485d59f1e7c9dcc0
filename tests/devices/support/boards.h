#pragma once

#include "literals.h"

#include <devices/simulated_board.h>

// The parts of a simulated board, in a few words.

inline SimulatedBoardSetup::Line lineOf(const QString& name, DLine::Kind kind, DLine::Direction direction,
                                        int level)
{
    SimulatedBoardSetup::Line made;
    made.line.name = name;
    made.line.kind = kind;
    made.line.direction = direction;
    made.level = level;
    return made;
}

inline SimulatedBoardSetup::Line output(const QString& name)
{
    return lineOf(name, DLine::Kind::Digital, DLine::Direction::Out, 0);
}

inline SimulatedBoardSetup::Line input(const QString& name, int level = 0)
{
    return lineOf(name, DLine::Kind::Digital, DLine::Direction::In, level);
}

inline SimulatedBoardSetup::Line analogOutput(const QString& name)
{
    return lineOf(name, DLine::Kind::Analog, DLine::Direction::Out, 0);
}

inline SimulatedBoardSetup::Line analogInput(const QString& name, int level = 0)
{
    return lineOf(name, DLine::Kind::Analog, DLine::Direction::In, level);
}

inline SimulatedBoardSetup::Line wave(const QString& name, const Waveform& waveform)
{
    SimulatedBoardSetup::Line made = analogInput(name);
    made.waveform = waveform;
    return made;
}

/// A board of these lines with these wires, without faults.
inline SimulatedBoardSetup boardOf(const QVector<SimulatedBoardSetup::Line>& lines,
                                   const QVector<SimulatedBoardSetup::Wire>& wires = {})
{
    SimulatedBoardSetup setup;
    setup.lines = lines;
    setup.wires = wires;
    return setup;
}

/// A board of so many digital outputs, "line0" and so on.
inline SimulatedBoardSetup digitalOutputs(int count)
{
    QVector<SimulatedBoardSetup::Line> lines;
    for (int line = 0; line < count; ++line) {
        lines.append(output("line%1"_s.arg(line)));
    }
    return boardOf(lines);
}
