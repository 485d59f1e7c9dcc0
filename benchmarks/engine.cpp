// An order and a listening event on their whole way: the engine, the plugin, the simulated board and back.

#include "hand_written.h"
#include "paths.h"
#include "rig.h"

#include <QCoreApplication>

#include <memory>

namespace {

std::function<void()> handWrittenOrder()
{
    return [links = hand_written::Links{{QStringLiteral("START"), QStringLiteral("line0")}},
            device = std::make_shared<hand_written::Device>()] {
        const QVariantMap arguments = {{QStringLiteral("channel"), QStringLiteral("START")}};
        const QSharedPointer<hand_written::Reading> reading(
            new hand_written::Reading(arguments, device.get()));
        bool taken = false;
        device->send(reading->request(links),
                     [&reading, &taken](const QVariantMap& reply) { taken = reading->take(reply); });
        QCoreApplication::sendPostedEvents();
        if (!taken) {
            std::abort();
        }
    };
}

std::function<void()> engineOrder()
{
    return [rig = std::make_shared<Rig>(2)] {
        const auto order = rig->order(QStringLiteral("getValue"),
                                      {{QStringLiteral("channel"), QStringLiteral("CHANNEL_0")}});
        order->start();
        QCoreApplication::sendPostedEvents();
        if (!order->isSuccessful()) {
            std::abort();
        }
    };
}

std::function<void()> handWrittenEvent(bool risingEdges)
{
    auto watch = std::make_shared<hand_written::Watch>(risingEdges);
    return [watch, device = std::make_shared<hand_written::Device>(), level = 0]() mutable {
        bool taken = false;
        level = 1 - level;
        device->change(level, [&watch, &taken](const QVariantMap& reply) { taken = watch->take(reply); });
        QCoreApplication::sendPostedEvents();
        if (!taken) {
            std::abort();
        }
    };
}

std::function<void()> engineEvent(const QString& edge)
{
    auto rig = std::make_shared<Rig>(2);
    auto events = std::make_shared<int>(0);
    const std::shared_ptr<DOrder> listener = rig->listener(1, edge, events.get());
    return [rig, events, listener] {
        const int before = *events;
        rig->toggle(1);
        QCoreApplication::sendPostedEvents();
        if (*events != before + 1) {
            std::abort();
        }
    };
}

} // namespace

int main(int argc, char** argv)
{
    return runPaths(argc, argv,
                    {{"order_engine/floor", handWrittenOrder},
                     {"order_engine/ours", engineOrder},
                     {"event_engine/floor", [] { return handWrittenEvent(false); }},
                     {"event_engine/ours", [] { return engineEvent(QString()); }},
                     {"edge_engine/floor", [] { return handWrittenEvent(true); }},
                     {"edge_engine/ours", [] { return engineEvent(QStringLiteral("RE")); }}});
}
