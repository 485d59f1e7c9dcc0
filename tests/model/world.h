#pragma once

#include "manual_scheduler.h"
#include "message_log.h"
#include "order_rules.h"
#include "random_source.h"
#include "recording_device.h"
#include "treatment_rules.h"
#include "watched_backend.h"
#include "watched_plugin.h"

#include <memory>
#include <optional>
#include <vector>

class DTool;

/// Devices, tools, orders and backends of the host, to which random things happen. What comes of them is held
/// against the rules.
class World : public QObject, public CommandObserver
{
    Q_OBJECT
    Q_DISABLE_COPY(World)

public:
    /// scheduler moves the time of the event loop too.
    World(quint64 seed, Journal* journal, ManualScheduler* scheduler);
    ~World() override;

    /// Does one random thing, and mostly lets all of its consequences happen.
    void step();
    /// Ends and destroys everything; nothing may be left.
    void finish();

    const OrderRules& orderRules() const { return m_orderRules; }
    const TreatmentRules& treatmentRules() const { return m_treatmentRules; }
    quint64 destroyed() const { return m_destroyed; }

private:
    /// Where the run is while it does something; what may be done differs.
    enum class Place
    {
        Outside,  ///< between events
        Listener, ///< in a signal or a page's backend, where an event loop may run
        Command,  ///< below a command, which runs no event loop
        Device    ///< below a device, which runs none, and is neither plugged, unplugged nor destroyed
    };

    /// An object of the host, and what the model knows of it.
    template <typename Object, typename State>
    struct Entry
    {
        std::unique_ptr<Object> object;
        std::shared_ptr<State> state;
    };
    using DeviceEntry = Entry<RecordingDevice, model::Device>;
    using ToolEntry = Entry<DTool, model::Tool>;
    using OrderEntry = Entry<DOrder, model::Order>;
    using BackendEntry = Entry<WatchedBackend, model::Backend>;

    void act();
    void moment(Place place);
    bool isBelow(Place place) const;
    void settle();
    void check();
    void checkMessages();
    void pump();
    void note(const QString& action);

    void makeDevice();
    void makeTool();
    void makeOrder();
    void makeBackend();
    void startOrder();
    void stopOrder();
    void destroyOrder();
    void answer();
    void plug();
    void advance();
    void queueTreatments();
    void closeTool();
    void destroyDevice();
    void destroyBackend();

    void requestArrives(const model::Device& device, quint64 request);
    void cancelArrives(model::Device& device, quint64 request);
    void watchOrder(DOrder* order, const std::shared_ptr<model::Order>& state);
    void start(DOrder* order, model::Order& state);
    model::Order& stateOf(quint64 order) const;
    std::shared_ptr<model::Backend> stateOf(const QObject* backend) const;

    void commandLinked(DOrder* order) override;
    void executeBegins(quint64 order) override;
    void executeEnds(quint64 order, bool accepted) override;
    void sendBegins(quint64 order, const QString& instruction, const QVariantMap&, int timeoutMs) override;
    void sendEnds(quint64, quint64 request) override { m_orderRules.sendEnds(request); }
    void replyBegins(quint64 order, quint64 request, const QVariantMap& reply) override;
    void replyEnds(quint64 order, quint64 request, bool accepted) override;
    void finishBegins(quint64 order, bool ok) override;
    void finishEnds(quint64) override { moment(Place::Listener); }
    void commandDestroyed(quint64) override { --m_workingCommands; }

    RandomSource m_random;
    Journal* m_journal;
    ManualScheduler* m_scheduler;
    OrderRules m_orderRules;
    TreatmentRules m_treatmentRules;
    WatchedPlugin m_prototype;
    std::vector<DeviceEntry> m_devices;
    std::vector<ToolEntry> m_tools;
    std::vector<OrderEntry> m_orders;
    std::vector<BackendEntry> m_backends;
    int m_untilMoment = 0; ///< moments until something is done in one; 0 while nothing is to be
    std::vector<Place> m_places;
    std::optional<MessageLog> m_log;
    int m_lastTreatment = 0;
    int m_workingCommands = 0;
    quint64 m_destroyed = 0;
};
