#pragma once

#include <QtGlobal>

/// In a fuzzer the steady clock of the process stands still. It moves on when the event loop would wait, to
/// the end of that waiting, so that hours pass at once and every run of an input is the same. A loop that
/// would wait for ever is a finding. Each input begins with steady_clock::restart.

/// Moves the clock forward and carries out what falls due meanwhile.
void passTime(qint64 milliseconds);
