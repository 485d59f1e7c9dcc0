// What one item costs when there are many of them at once; the floor is the same with one.

#include "rig.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

namespace {

/// count orders are pending before the first of them is answered. The board itself lives in place.
void ordersAtOnce(benchmark::State& state, int count, DevicePlace place)
{
    Rig rig(2, {}, place);
    std::vector<std::unique_ptr<DOrder>> orders(static_cast<std::size_t>(count));
    for ([[maybe_unused]] auto step : state) {
        for (auto& order : orders) {
            order = rig.order(QStringLiteral("getValue"),
                              {{QStringLiteral("channel"), QStringLiteral("CHANNEL_0")}});
            order->start();
        }
        QCoreApplication::sendPostedEvents();
        for (auto& order : orders) {
            while (order->state() != DOrder::State::Finished && place != DevicePlace::SameThread) {
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            }
            if (!order->isSuccessful()) {
                state.SkipWithError("an order has not ended");
            }
            order.reset();
        }
    }
    state.SetItemsProcessed(state.iterations() * count);
}

/// count listeners, spread over the first lines of a board; each of these lines changes once.
void listeners(benchmark::State& state, int count, int lines)
{
    Rig rig(2 * 1000);
    int events = 0;
    std::vector<std::unique_ptr<DOrder>> listeners;
    for (int number = 0; number < count; ++number) {
        listeners.push_back(rig.listener(2 * (number % lines) + 1, QString(), &events));
    }
    events = 0;
    for ([[maybe_unused]] auto step : state) {
        for (int line = 0; line < lines; ++line) {
            rig.toggle(2 * line + 1);
        }
        QCoreApplication::sendPostedEvents();
    }
    if (events != state.iterations() * count) {
        state.SkipWithError("an event is missing");
    }
    state.SetItemsProcessed(state.iterations() * count);
}

} // namespace

constexpr auto c_here = DevicePlace::SameThread;
constexpr auto c_there = DevicePlace::OwnThread; // one alone: latency; many: orders a second

BENCHMARK_CAPTURE(ordersAtOnce, , 1, c_here)->Name("orders_at_once/floor");
BENCHMARK_CAPTURE(ordersAtOnce, , 1000, c_here)->Name("orders_at_once/ours/1000");
BENCHMARK_CAPTURE(ordersAtOnce, , 10000, c_here)->Name("orders_at_once/ours/10000");
BENCHMARK_CAPTURE(ordersAtOnce, , 1, c_there)->Name("orders_at_once/own_thread/1")->UseRealTime();
BENCHMARK_CAPTURE(ordersAtOnce, , 1000, c_there)->Name("orders_at_once/own_thread/1000")->UseRealTime();
BENCHMARK_CAPTURE(listeners, , 1, 1)->Name("listeners_on_lines/floor");
BENCHMARK_CAPTURE(listeners, , 1000, 1000)->Name("listeners_on_lines/ours/1000");
BENCHMARK_CAPTURE(listeners, , 1, 1)->Name("listeners_on_one_line/floor");
BENCHMARK_CAPTURE(listeners, , 1000, 1)->Name("listeners_on_one_line/ours/1000");
