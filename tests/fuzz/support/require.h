#pragma once

/// Ends the process with a report of what does not hold, so that the fuzzer keeps the input.
void require(bool holds, const char* expectation);

/// From now on reports go where standard error leads now, also while that is captured.
void keepReports();
