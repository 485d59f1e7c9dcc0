// Heap bytes of a channel, of an order that waits for its reply, and of a listener, beside the Qt objects
// that each must hold.

#include "d_gpio_channel.h"
#include "rig.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QHash>

#include <malloc.h>
#include <memory>
#include <set>
#include <vector>

namespace {

constexpr int c_count = 10000;

double heapBytes()
{
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<double>(heap.uordblks) + static_cast<double>(heap.hblkhd);
}

/// Heap bytes of each of many things that make(number) returns.
template <typename Make>
void measure(benchmark::State& state, const Make& make)
{
    double bytes = 0;
    for ([[maybe_unused]] auto step : state) {
        std::vector<decltype(make(0))> things;
        things.reserve(c_count);
        const double before = heapBytes();
        for (int number = 0; number < c_count; ++number) {
            things.push_back(make(number));
        }
        bytes = (heapBytes() - before) / c_count;
    }
    state.counters["bytes"] = bytes;
}

/// What a channel must hold.
struct HandWrittenChannel : QObject
{
    QString id;
    QString name;
    QString label;
    QVariant value;
    int type = 0;
    QVariantMap parameters;
};

void channelFloor(benchmark::State& state)
{
    const QVariantMap entry = Rig::channelEntry(0);
    measure(state, [&entry](int) {
        auto channel = QSharedPointer<HandWrittenChannel>::create();
        channel->setObjectName(QStringLiteral("DGpioChannel"));
        channel->id = entry.value(QStringLiteral("id")).toString();
        channel->name = entry.value(QStringLiteral("name")).toString();
        const QVariantList pairs = entry.value(QStringLiteral("value")).toList();
        for (const QVariant& item : pairs) {
            const QVariantMap pair = item.toMap();
            channel->parameters.insert(pair.value(QStringLiteral("id")).toString(),
                                       pair.value(QStringLiteral("value")));
        }
        return channel;
    });
}

void channelOurs(benchmark::State& state)
{
    const QVariantMap entry = Rig::channelEntry(0);
    measure(state, [&entry](int) { return DGpioChannel::create(entry); });
}

/// What an order must hold while its request is pending: itself and its command, both objects with a name,
/// the arguments, the request, which the device knows by its number, who gets the reply, and the results.
struct HandWrittenOrder : QObject
{
    struct Request
    {
        ICommand::ReplyDelegate onReply;
        QString instruction;
        QVariantMap arguments;
        int timeoutMs = 0;
    };

    QSharedPointer<QObject> command;
    QVariantMap arguments;
    QVariantMap results;
    QHash<quint64, Request> requests;
    QString reason;
};

template <typename Order>
std::unique_ptr<Order> handWrittenOrder(const QString& command, const QVariantMap& arguments,
                                        const QStringList& results)
{
    auto order = std::make_unique<Order>();
    order->setObjectName(command);
    order->command.reset(new QObject);
    order->command->setObjectName(command);
    order->arguments = arguments;
    for (const QString& result : results) {
        order->results.insert(result, QVariant());
    }
    order->requests.insert(
        1, {{}, command, {{QStringLiteral("channel"), arguments.value(QStringLiteral("channel"))}}, 4000});
    return order;
}

void orderFloor(benchmark::State& state)
{
    measure(state, [](int) {
        return handWrittenOrder<HandWrittenOrder>(QStringLiteral("getValue"),
                                                  {{QStringLiteral("channel"), QStringLiteral("CHANNEL_0")}},
                                                  {QStringLiteral("value")});
    });
}

std::unique_ptr<DOrder> startedOrder(Rig& rig, const QString& command, const QVariantMap& arguments)
{
    auto order = rig.order(command, arguments);
    order->start();
    QCoreApplication::sendPostedEvents();
    return order;
}

void orderOurs(benchmark::State& state)
{
    SimulatedBoardSetup::Fault silence;
    Rig rig(2, {silence});
    measure(state, [&rig](int) {
        return startedOrder(rig, QStringLiteral("getValue"),
                            {{QStringLiteral("channel"), QStringLiteral("CHANNEL_0")}});
    });
}

/// A listener keeps the level that it has seen last, and its place among those who listen to the line.
struct HandWrittenListener : HandWrittenOrder
{
    int last = 0;
};

void listenerFloor(benchmark::State& state)
{
    std::set<quint64> listenersOfLine;
    measure(state, [&listenersOfLine](int number) {
        listenersOfLine.insert(static_cast<quint64>(number));
        return handWrittenOrder<HandWrittenListener>(
            QStringLiteral("startListening"),
            {{QStringLiteral("channel"), QStringLiteral("CHANNEL_1")}, {QStringLiteral("edge"), QString()}},
            {QStringLiteral("lastValue"), QStringLiteral("value")});
    });
}

void listenerOurs(benchmark::State& state)
{
    Rig rig(2);
    measure(state, [&rig](int) {
        return startedOrder(
            rig, QStringLiteral("startListening"),
            {{QStringLiteral("channel"), QStringLiteral("CHANNEL_1")}, {QStringLiteral("edge"), QString()}});
    });
}

} // namespace

BENCHMARK(channelFloor)->Name("memory_channel/floor")->Iterations(1);
BENCHMARK(channelOurs)->Name("memory_channel/ours")->Iterations(1);
BENCHMARK(orderFloor)->Name("memory_order/floor")->Iterations(1);
BENCHMARK(orderOurs)->Name("memory_order/ours")->Iterations(1);
BENCHMARK(listenerFloor)->Name("memory_listener/floor")->Iterations(1);
BENCHMARK(listenerOurs)->Name("memory_listener/ours")->Iterations(1);
