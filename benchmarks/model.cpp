// The list of channels beside Qt's own model of items.

#include "olm_d_gpio_channel.h"

#include <benchmark/benchmark.h>

#include <QStandardItemModel>

namespace {

class Channels : public OLM_DGpioChannel
{
public:
    using OLM_DGpioChannel::item;
};

QVector<QSharedPointer<DGpioChannel>> makeChannels(int count)
{
    QVector<QSharedPointer<DGpioChannel>> channels;
    for (int row = 0; row < count; ++row) {
        channels.append(QSharedPointer<DGpioChannel>::create());
    }
    return channels;
}

/// An item that carries an object, as a row of the list does.
QVector<QStandardItem*> makeItems(int count, QObject* carried)
{
    QVector<QStandardItem*> items;
    for (int row = 0; row < count; ++row) {
        items.append(new QStandardItem);
        items.last()->setData(QVariant::fromValue(carried), Qt::UserRole);
    }
    return items;
}

void setItems(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void appendOurs(benchmark::State& state)
{
    for ([[maybe_unused]] auto step : state) {
        state.PauseTiming();
        auto model = std::make_unique<Channels>();
        auto channels = makeChannels(static_cast<int>(state.range(0)));
        state.ResumeTiming();
        for (const auto& channel : qAsConst(channels)) {
            model->append(channel);
        }
        state.PauseTiming();
        model.reset();
        channels.clear();
        state.ResumeTiming();
    }
    setItems(state);
}

void appendFloor(benchmark::State& state)
{
    QObject carried;
    for ([[maybe_unused]] auto step : state) {
        state.PauseTiming();
        auto model = std::make_unique<QStandardItemModel>();
        auto items = makeItems(static_cast<int>(state.range(0)), &carried);
        state.ResumeTiming();
        for (QStandardItem* item : qAsConst(items)) {
            model->appendRow(item);
        }
        state.PauseTiming();
        model.reset();
        items.clear();
        state.ResumeTiming();
    }
    setItems(state);
}

void readAll(benchmark::State& state, const QAbstractItemModel& model)
{
    const int rows = model.rowCount();
    for ([[maybe_unused]] auto step : state) {
        for (int row = 0; row < rows; ++row) {
            benchmark::DoNotOptimize(model.data(model.index(row, 0), Qt::UserRole));
        }
    }
    setItems(state);
}

void dataOurs(benchmark::State& state)
{
    Channels model;
    for (const auto& channel : makeChannels(static_cast<int>(state.range(0)))) {
        model.append(channel);
    }
    readAll(state, model);
}

void dataFloor(benchmark::State& state)
{
    QObject carried;
    QStandardItemModel model;
    for (QStandardItem* item : makeItems(static_cast<int>(state.range(0)), &carried)) {
        model.appendRow(item);
    }
    readAll(state, model);
}

void itemOurs(benchmark::State& state)
{
    Channels model;
    for (const auto& channel : makeChannels(static_cast<int>(state.range(0)))) {
        model.append(channel);
    }
    for ([[maybe_unused]] auto step : state) {
        for (int row = 0; row < model.length(); ++row) {
            benchmark::DoNotOptimize(model.item(row));
        }
    }
    setItems(state);
}

/// The object of a row, out of the item of that row.
void itemFloor(benchmark::State& state)
{
    QObject carried;
    QStandardItemModel model;
    for (QStandardItem* item : makeItems(static_cast<int>(state.range(0)), &carried)) {
        model.appendRow(item);
    }
    for ([[maybe_unused]] auto step : state) {
        for (int row = 0; row < model.rowCount(); ++row) {
            benchmark::DoNotOptimize(model.item(row)->data(Qt::UserRole));
        }
    }
    setItems(state);
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(100)->Arg(10000)->Arg(100000);
}

} // namespace

BENCHMARK(appendFloor)->Name("model_append/floor")->Apply(sizes);
BENCHMARK(appendOurs)->Name("model_append/ours")->Apply(sizes);
BENCHMARK(dataFloor)->Name("model_data/floor")->Apply(sizes);
BENCHMARK(dataOurs)->Name("model_data/ours")->Apply(sizes);
BENCHMARK(itemFloor)->Name("model_item/floor")->Apply(sizes);
BENCHMARK(itemOurs)->Name("model_item/ours")->Apply(sizes);
