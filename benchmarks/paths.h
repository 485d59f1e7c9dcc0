#pragma once

#include <functional>
#include <vector>

/// A way through the code that is timed, and whose instructions are counted.
struct Path
{
    const char* name;
    /// Makes what the path needs and returns the function that goes it once.
    std::function<std::function<void()>()> prepare;
};

/// The main function of a program of paths: times them by the arguments of Google Benchmark, or, with
/// "--count NAME N", goes one of them N times. Returns the exit status.
int runPaths(int argc, char** argv, const std::vector<Path>& paths);
