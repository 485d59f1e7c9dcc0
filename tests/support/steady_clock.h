#pragma once

#include <QtGlobal>

#include <chrono>

/// The steady clock of this process, which stands still until it is moved. Qt's timers and elapsed times run
/// by it: a timer fires in the first pass of the event loop after the clock was moved past its time.
namespace steady_clock {

/// Milliseconds on the clock.
qint64 nowMs();
/// Moves the clock forward.
void advance(std::chrono::nanoseconds time);
/// Sets the clock back to where it began. No timer may run.
void restart();

} // namespace steady_clock
