#pragma once

#include <manual_scheduler.h>

class IPlugin;

/// The time of a fuzzer: it stands still until it is moved, or until the event loop would wait, so that hours
/// pass at once and every run of an input is the same. A loop that would wait for ever is a finding.
ManualScheduler& fuzzerTime();

/// To be called at the beginning of every input: what is left of the one before goes, and the time is 0.
void beginInput();

/// The plugin's six commands, each held to the rules of commands.
const IPlugin& watchedPlugin();

/// Number of messages that the process has logged so far. None of them is shown.
int loggedMessages();

/// Delivers what waits in the event loop, and what follows from it.
void settle();

/// Moves the time forward and carries out what falls due meanwhile.
void passTime(qint64 milliseconds);
