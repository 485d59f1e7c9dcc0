#include "paths.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <cstdlib>
#include <cstring>

namespace {

int goPath(const std::vector<Path>& paths, const char* name, int times)
{
    for (const Path& path : paths) {
        if (std::strcmp(path.name, name) == 0) {
            const auto go = path.prepare();
            for (int time = 0; time < times; ++time) {
                go();
            }
            return 0;
        }
    }
    std::fprintf(stderr, "unknown path \"%s\"\n", name);
    return 2;
}

} // namespace

int runPaths(int argc, char** argv, const std::vector<Path>& paths)
{
    const QCoreApplication application(argc, argv);
    if (argc == 4 && std::strcmp(argv[1], "--count") == 0) {
        return goPath(paths, argv[2], std::atoi(argv[3]));
    }
    for (const Path& path : paths) {
        benchmark::RegisterBenchmark(path.name, [&path](benchmark::State& state) {
            const auto go = path.prepare();
            for ([[maybe_unused]] auto step : state) {
                go();
            }
        });
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
