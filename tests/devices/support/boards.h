#pragma once

#include "literals.h"

#include <devices/simulated_board.h>

/// The parts of a simulated board, in a few words.
SimulatedBoardSetup::Line output(const QString& name);
SimulatedBoardSetup::Line input(const QString& name, int level = 0);
SimulatedBoardSetup::Line analogOutput(const QString& name);
SimulatedBoardSetup::Line analogInput(const QString& name, int level = 0);
SimulatedBoardSetup::Line wave(const QString& name, const Waveform& waveform);

/// A board of these lines with these wires, without faults.
SimulatedBoardSetup boardOf(const QVector<SimulatedBoardSetup::Line>& lines,
                            const QVector<SimulatedBoardSetup::Wire>& wires = {});
/// A board of so many digital outputs, "line0" and so on.
SimulatedBoardSetup digitalOutputs(int count);
