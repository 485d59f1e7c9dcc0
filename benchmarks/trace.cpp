// Writing a trace, beside writing the same bytes through one buffer.

#include <manual_scheduler.h>
#include <trace/vcd_trace.h>

#include <devices/line_device.h>

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

namespace {

constexpr int c_events = 100000;
constexpr int c_lines = 16;
constexpr int c_buffer = 1 << 16;

/// A device that has nothing behind it, and announces levels as it is told.
class Announcer : public LineDevice
{
public:
    explicit Announcer(DScheduler* scheduler)
        : LineDevice(
              QStringLiteral("announcer"), inputs(), scheduler, DevicePlace::SameThread,
              [](DScheduler*, ::LineListener*) { return nullptr; }, OutputsAtEnd::Vanish)
    {}

    void announceEvents()
    {
        for (int event = 0; event < c_events; ++event) {
            Q_EMIT lineChanged(event % c_lines, {event / c_lines % 2, 1000000 + 7 * event, true});
        }
    }

private:
    static QVector<DLine> inputs()
    {
        QVector<DLine> lines;
        for (int line = 0; line < c_lines; ++line) {
            lines.append({QStringLiteral("line%1").arg(line), DLine::Kind::Digital, DLine::Direction::In});
        }
        return lines;
    }
};

QString traceFile()
{
    static const QTemporaryDir folder;
    return folder.filePath(QStringLiteral("trace.vcd"));
}

void traceOurs(benchmark::State& state)
{
    ManualScheduler scheduler;
    Announcer device(&scheduler);
    for ([[maybe_unused]] auto step : state) {
        VcdTrace trace(device);
        const DWording problem = trace.begin(traceFile());
        device.announceEvents();
        if (!problem.isEmpty() || !trace.end().isEmpty()) {
            state.SkipWithError("the trace cannot be written");
        }
    }
    state.SetItemsProcessed(state.iterations() * c_events);
}

/// The pieces that a trace is made of, as it is written.
QVector<QByteArray> tracePieces()
{
    ManualScheduler scheduler;
    Announcer device(&scheduler);
    VcdTrace trace(device);
    trace.begin(traceFile());
    device.announceEvents();
    trace.end();
    QFile file(traceFile());
    QVector<QByteArray> pieces;
    if (file.open(QIODevice::ReadOnly)) {
        while (!file.atEnd()) {
            pieces.append(file.readLine() + file.readLine());
        }
    }
    return pieces;
}

void traceFloor(benchmark::State& state)
{
    const QVector<QByteArray> pieces = tracePieces();
    for ([[maybe_unused]] auto step : state) {
        QFile file(traceFile());
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
            state.SkipWithError("the trace cannot be written");
            return;
        }
        QByteArray buffer;
        for (const QByteArray& piece : pieces) {
            buffer += piece;
            if (buffer.size() >= c_buffer) {
                file.write(buffer);
                buffer.clear();
            }
        }
        file.write(buffer);
    }
    state.SetItemsProcessed(state.iterations() * c_events);
}

} // namespace

BENCHMARK(traceFloor)->Name("trace/floor");
BENCHMARK(traceOurs)->Name("trace/ours");
