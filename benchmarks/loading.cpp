// Loading the plugin, making its prototype and declaring its catalogue, each time in a process that is new to
// it.

#include <plugin_management/d_abstract_plugin.h>

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QLibrary>
#include <QPluginLoader>

#include <ctime>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double secondsNow()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Loads file in this process; what a host does up to the list of commands, as far as it goes.
bool load(const QString& file)
{
    QPluginLoader loader(file);
    QObject* instance = loader.instance();
    if (auto* plugin = dynamic_cast<DAbstractPlugin*>(instance)) {
        plugin->initPluginCommands();
        return plugin->commandNames().size() == 6;
    }
    return instance != nullptr;
}

/// Seconds that loading file takes in a child process; negative when it could not be loaded.
double loadInChild(const QString& file)
{
    int ends[2];
    if (pipe(ends) != 0) {
        return -1;
    }
    const pid_t child = fork();
    if (child == 0) {
        const double start = secondsNow();
        const bool loaded = load(file);
        const double taken = loaded ? secondsNow() - start : -1;
        _exit(write(ends[1], &taken, sizeof(taken)) == sizeof(taken) ? 0 : 1);
    }
    close(ends[1]);
    double taken = -1;
    if (read(ends[0], &taken, sizeof(taken)) != sizeof(taken)) {
        taken = -1;
    }
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return taken;
}

void loadPlugin(benchmark::State& state, const QString& file)
{
    for ([[maybe_unused]] auto step : state) {
        const double taken = loadInChild(file);
        if (taken < 0) {
            state.SkipWithError("the plugin could not be loaded");
            return;
        }
        state.SetIterationTime(taken);
    }
}

void registerLoads(const std::string& name)
{
    const std::pair<const char*, QString> files[] = {
        {"/floor", QStringLiteral(EMPTY_PLUGIN_FILE)},
        {"/ours", QStringLiteral(PLUGIN_FILE)},
        {"/serial_bus", QStringLiteral(QT_PLUGINS_DIR "/canbus/libqtvirtualcanbus.so")},
    };
    for (const auto& [side, file] : files) {
        benchmark::RegisterBenchmark((name + side).c_str(), [file = file](benchmark::State& state) {
            loadPlugin(state, file);
        })->UseManualTime();
    }
}

} // namespace

/// A host without a window has not loaded Qt's QML module, which the plugin links; one with a window has:
/// "--with-qml" loads it before.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const bool withQml = argc > 1 && std::string(argv[argc - 1]) == "--with-qml";
    if (withQml) {
        --argc;
        QLibrary qml(QStringLiteral(QML_LIBRARY_FILE));
        if (!qml.load()) {
            return 1;
        }
    }
    registerLoads(withQml ? "loading_after_qml" : "loading");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
