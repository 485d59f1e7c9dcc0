#pragma once

/// Number of messages that the process has logged so far. None of them is shown.
int loggedMessages();

/// Delivers what waits in the event loop, and what follows from it.
void settle();
