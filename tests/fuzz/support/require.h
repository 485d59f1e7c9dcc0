#pragma once

/// Ends the process with a report of what does not hold, so that the fuzzer keeps the input.
void require(bool holds, const char* expectation);
