#include "bench_process.h"
#include "line_bench.h"
#include "literals.h"
#include "sim_chip.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>

#include <cstdio>
#include <functional>
#include <gpiod.h>

namespace {

constexpr int c_orders = 2000;
constexpr int c_calls = 50000;
constexpr int c_processes = 40;

double perSecond(int times, const std::function<void()>& work)
{
    QElapsedTimer clock;
    clock.start();
    work();
    return times * 1e9 / static_cast<double>(clock.nsecsElapsed());
}

void row(const char* way, double writes, double reads, double bareWrites, double bareReads)
{
    std::printf("| %s | %.0f | 1/%.0f | %.0f | 1/%.0f |\n", way, writes, bareWrites / writes, reads,
                bareReads / reads);
}

/// Orders that one shell session carries out in a second, its start and end left out.
double shellRate(const QString& file, const QByteArray& orders)
{
    const QStringList arguments = {"--config"_s, file, "shell"_s};
    QElapsedTimer clock;
    clock.start();
    runBench(arguments, orders);
    const qint64 alone = clock.nsecsElapsed();
    clock.restart();
    runBench(arguments, orders.repeated(c_orders / 2 + 1));
    return c_orders * 1e9 / static_cast<double>(clock.nsecsElapsed() - alone);
}

} // namespace

/// Measures writes and reads of a kernel line a second, as rows of a table.
int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const SimChip chip("rates"_s, 4);
    const QString name = chip.name();
    const QVector<QJsonObject> lines = {output("lamp"_s, name, 0), input("button"_s, name, 1)};

    gpiod_chip* bare = gpiod_chip_open_lookup(qPrintable(name));
    gpiod_line* lamp = gpiod_chip_get_line(bare, 0);
    gpiod_line* button = gpiod_chip_get_line(bare, 1);
    gpiod_line_request_output(lamp, "rates", 0);
    gpiod_line_request_input(button, "rates");
    const double bareWrites = perSecond(c_calls, [lamp] {
        for (int call = 0; call < c_calls; ++call) {
            gpiod_line_set_value(lamp, call % 2);
        }
    });
    const double bareReads = perSecond(c_calls, [button] {
        for (int call = 0; call < c_calls; ++call) {
            gpiod_line_get_value(button);
        }
    });
    gpiod_chip_close(bare);
    row("bare libgpiod loop", bareWrites, bareReads, bareWrites, bareReads);

    {
        LineBench bench(lines);
        for (int order = 0; order < c_orders; ++order) {
            bench.set("lamp"_s, "ON"_s); // memory is slow to come in this kernel: not measured
        }
        const double writes = perSecond(c_orders, [&bench] {
            for (int order = 0; order < c_orders; ++order) {
                bench.set("lamp"_s, order % 2 != 0 ? "ON"_s : "OFF"_s);
            }
        });
        const double reads = perSecond(c_orders, [&bench] {
            for (int order = 0; order < c_orders; ++order) {
                bench.get("button"_s);
            }
        });
        row("orders in process", writes, reads, bareWrites, bareReads);
    }

    const QString file = temporaryFile(configurationOf(lines));
    row("orders through one `shell` session",
        shellRate(file, "setValue channel=lamp state=ON\nsetValue channel=lamp state=OFF\n"),
        shellRate(file, "getValue channel=button\ngetValue channel=button\n"), bareWrites, bareReads);

    const auto processes = [&name](const QString& program, const QString& line) {
        return perSecond(c_processes, [&] {
            for (int run = 0; run < c_processes; ++run) {
                QProcess::execute(program, {name, line});
            }
        });
    };
    row("one `gpioset` or `gpioget` process each", processes("gpioset"_s, "0=1"_s),
        processes("gpioget"_s, "1"_s), bareWrites, bareReads);
    return 0;
}
