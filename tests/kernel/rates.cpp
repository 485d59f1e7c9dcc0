#include "bench_process.h"
#include "line_bench.h"
#include "literals.h"
#include "sim_chip.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <limits>
#include <linux/gpio.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr int c_orders = 1000;
constexpr int c_calls = 20000;
constexpr int c_slices = 100;
constexpr int c_sessions = 3;
constexpr int c_ordersOfSession = 10000;
constexpr int c_processes = 20;

/// How often work is done in a second, of the fastest of some slices: other load on the machine slows most
/// down.
double perSecond(int times, int slices, const std::function<void(int)>& work)
{
    qint64 fastest = std::numeric_limits<qint64>::max();
    for (int slice = 0; slice < slices; ++slice) {
        QElapsedTimer clock;
        clock.start();
        for (int time = 0; time < times / slices; ++time) {
            work(time);
        }
        fastest = std::min(fastest, clock.nsecsElapsed());
    }
    return (times / slices) * 1e9 / static_cast<double>(fastest);
}

void row(const char* way, double writes, double reads, double bareWrites, double bareReads)
{
    std::printf("| %s | %.0f | 1/%.0f | %.0f | 1/%.0f |\n", way, writes, bareWrites / writes, reads,
                bareReads / reads);
}

/// Holds lines 0, an output, and 1, an input, without the bench; the descriptor of both.
int holdBare(const QString& chip)
{
    const int file = open(qPrintable("/dev/"_s + chip), O_RDWR | O_CLOEXEC);
    gpio_v2_line_request request = {};
    request.offsets[1] = 1;
    request.num_lines = 2;
    request.config.flags = GPIO_V2_LINE_FLAG_OUTPUT;
    request.config.num_attrs = 1;
    request.config.attrs[0].attr.id = GPIO_V2_LINE_ATTR_ID_FLAGS;
    request.config.attrs[0].attr.flags =
        GPIO_V2_LINE_FLAG_INPUT | GPIO_V2_LINE_FLAG_EDGE_RISING | GPIO_V2_LINE_FLAG_EDGE_FALLING;
    request.config.attrs[0].mask = 2;
    if (ioctl(file, GPIO_V2_GET_LINE_IOCTL, &request) != 0) {
        throw std::runtime_error("the lines cannot be had");
    }
    close(file);
    return request.fd;
}

/// Orders that one shell session carries out in a second, its start and end left out.
double shellRate(const QString& file, const QByteArray& orders)
{
    const QStringList arguments = {"--config"_s, file, "shell"_s};
    const auto duration = [&arguments](const QByteArray& input) {
        return 1e9 / perSecond(c_sessions, c_sessions, [&](int) { runBench(arguments, input); });
    };
    return c_ordersOfSession * 1e9 /
           (duration(orders.repeated(c_ordersOfSession / 2 + 1)) - duration(orders));
}

} // namespace

/// Measures writes and reads of a kernel line a second, as rows of a table.
int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const SimChip chip("rates"_s, 4);
    const QString name = chip.name();
    const QVector<QJsonObject> lines = {output("lamp"_s, name, 0), input("button"_s, name, 1)};

    const int bare = holdBare(name);
    const double bareWrites = perSecond(c_calls, c_slices, [bare](int call) {
        gpio_v2_line_values values = {static_cast<quint64>(call % 2), 1};
        ioctl(bare, GPIO_V2_LINE_SET_VALUES_IOCTL, &values);
    });
    const double bareReads = perSecond(c_calls, c_slices, [bare](int) {
        gpio_v2_line_values values = {0, 2};
        ioctl(bare, GPIO_V2_LINE_GET_VALUES_IOCTL, &values);
    });
    close(bare);
    row("bare loop of system calls", bareWrites, bareReads, bareWrites, bareReads);

    {
        LineBench bench(lines);
        for (int order = 0; order < c_orders; ++order) {
            bench.set("lamp"_s, "ON"_s); // memory is slow to come in this kernel: not measured
        }
        const double writes = perSecond(c_orders, c_slices, [&bench](int order) {
            bench.set("lamp"_s, order % 2 != 0 ? "ON"_s : "OFF"_s);
        });
        const double reads = perSecond(c_orders, c_slices, [&bench](int) { bench.get("button"_s); });
        row("orders in process", writes, reads, bareWrites, bareReads);
    }

    const QString file = temporaryFile(configurationOf(lines));
    row("orders through one `shell` session",
        shellRate(file, "setValue channel=lamp state=ON\nsetValue channel=lamp state=OFF\n"),
        shellRate(file, "getValue channel=button\ngetValue channel=button\n"), bareWrites, bareReads);

    const auto processes = [&name](const QString& program, const QString& line) {
        return perSecond(c_processes, c_processes, [&](int) { QProcess::execute(program, {name, line}); });
    };
    row("one `gpioset` or `gpioget` process each", processes("gpioset"_s, "0=1"_s),
        processes("gpioget"_s, "1"_s), bareWrites, bareReads);
    return 0;
}
