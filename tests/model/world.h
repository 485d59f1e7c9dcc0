#pragma once

#include "literals.h"
#include "manual_scheduler.h"
#include "message_log.h"
#include "order_rules.h"
#include "random_source.h"
#include "recording_device.h"
#include "reply_shapes.h"
#include "treatment_rules.h"
#include "watched_backend.h"
#include "watched_plugin.h"

#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QJsonDocument>

#include <algorithm>
#include <memory>
#include <numeric>
#include <optional>
#include <vector>

/// Devices, tools, orders and backends of the host, to which random things happen. What comes of them is held
/// against the rules.
class World : public QObject, public CommandObserver
{
    Q_OBJECT
    Q_DISABLE_COPY(World)

public:
    /// scheduler moves the time of the event loop too.
    World(quint64 seed, Journal* journal, ManualScheduler* scheduler)
        : m_random(seed)
        , m_journal(journal)
        , m_scheduler(scheduler)
        , m_orderRules(*journal, *scheduler)
        , m_treatmentRules(*journal)
        , m_prototype(this)
    {
        m_places.push_back(Place::Outside);
        m_log.emplace();
    }

    /// Does one random thing, and mostly lets all of its consequences happen.
    void step()
    {
        m_untilMoment = m_random.chance(40) ? 1 + m_random.below(6) : 0;
        act();
        if (m_random.chance(75)) {
            settle();
            check();
        }
    }

    /// Ends and destroys everything; nothing may be left.
    void finish()
    {
        m_untilMoment = 0;
        while (!m_backends.empty()) {
            destroyBackend();
        }
        for (const OrderEntry& entry : m_orders) {
            m_orderRules.stop(*entry.state);
            entry.object->stop();
        }
        settle();
        check();
        for (const DeviceEntry& entry : m_devices) {
            m_journal->require(entry.object->pendingRequests() == 0, "requests are left at the end"_s);
        }
        while (!m_orders.empty()) {
            destroyOrder();
        }
        while (!m_tools.empty()) {
            closeTool();
        }
        while (!m_devices.empty()) {
            destroyDevice();
        }
        settle();
        check();
        m_journal->require(m_orderRules.orders().empty(), "orders are left at the end"_s);
    }

    const OrderRules& orderRules() const { return m_orderRules; }
    const TreatmentRules& treatmentRules() const { return m_treatmentRules; }
    quint64 destroyed() const { return m_destroyed; }

private:
    static constexpr std::size_t c_mostDevices = 3;
    static constexpr std::size_t c_mostTools = 4;
    static constexpr std::size_t c_mostOrders = 20;
    static constexpr std::size_t c_mostBackends = 3;
    static constexpr std::size_t c_deepest = 3;
    static constexpr int c_manyChannels = 300;
    static constexpr int c_longestRest = 100000;

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
    /// Takes an element out of a list, which may change while the element is destroyed.
    template <typename Entry>
    static Entry taken(std::vector<Entry>& entries, int index)
    {
        const auto position = entries.begin() + index;
        Entry entry = std::move(*position);
        entries.erase(position);
        return entry;
    }

    using DeviceEntry = Entry<RecordingDevice, Device>;
    using ToolEntry = Entry<DTool, Tool>;
    using OrderEntry = Entry<DOrder, Order>;
    using BackendEntry = Entry<WatchedBackend, Backend>;

    void act()
    {
        struct Act
        {
            void (World::*act)();
            int weight;
            bool (*isPossible)(const World& world);
        };
        constexpr auto always = [](const World&) { return true; };
        constexpr auto hasDevices = [](const World& world) { return !world.m_devices.empty(); };
        constexpr auto hasTools = [](const World& world) { return !world.m_tools.empty(); };
        constexpr auto hasOrders = [](const World& world) { return !world.m_orders.empty(); };
        constexpr auto hasBackends = [](const World& world) { return !world.m_backends.empty(); };
        constexpr auto mayMoveDevices = [](const World& world) {
            return !world.m_devices.empty() && !world.isBelow(Place::Device);
        };
        static const std::vector<Act> acts = {
            {&World::makeOrder, 24, always},         {&World::answer, 24, hasDevices},
            {&World::advance, 12, always},           {&World::pump, 12, always},
            {&World::plug, 9, mayMoveDevices},       {&World::queueTreatments, 8, hasBackends},
            {&World::stopOrder, 6, hasOrders},       {&World::makeTool, 6, always},
            {&World::destroyOrder, 5, hasOrders},    {&World::startOrder, 4, hasOrders},
            {&World::makeDevice, 2, always},         {&World::makeBackend, 2, always},
            {&World::closeTool, 2, hasTools},        {&World::destroyDevice, 1, mayMoveDevices},
            {&World::destroyBackend, 1, hasBackends}};
        static const int all = std::accumulate(acts.cbegin(), acts.cend(), 0,
                                               [](int sum, const Act& act) { return sum + act.weight; });
        int drawn = m_random.below(all);
        const auto act = std::find_if(acts.cbegin(), acts.cend(),
                                      [&drawn](const Act& one) { return (drawn -= one.weight) < 0; });
        if (act->isPossible(*this)) {
            (this->*act->act)();
        }
    }

    /// Something else may happen at any moment of what happens.
    void moment(Place place)
    {
        if (m_untilMoment == 0 || m_places.size() > c_deepest || --m_untilMoment > 0) {
            return;
        }
        m_untilMoment = m_random.chance(50) ? 1 + m_random.below(4) : 0;
        m_places.push_back(place);
        act();
        m_places.pop_back();
    }

    bool isBelow(Place place) const
    {
        return std::find(m_places.cbegin(), m_places.cend(), place) != m_places.cend();
    }

    /// Lets everything happen that follows by itself.
    void settle()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (int pass = 0; QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
             ++pass) {
            m_journal->require(pass < c_longestRest, "the host does not come to rest"_s);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    void check()
    {
        for (const auto& [id, order] : m_orderRules.orders()) {
            if (!order->gone) {
                m_orderRules.checkOrder(*order);
            }
        }
        m_orderRules.forgetGone();
        for (const OrderEntry& entry : m_orders) {
            const Order& order = *entry.state;
            const QString name = "order %1: "_s.arg(order.id);
            const DOrder::State state = !order.started  ? DOrder::State::Waiting
                                        : order.decided ? DOrder::State::Finished
                                                        : DOrder::State::Running;
            m_journal->require(entry.object->state() == state, name + "its state is wrong"_s);
            m_journal->require(entry.object->isListening() == order.isListening(),
                               name + "listening wrongly"_s);
            m_journal->require(entry.object->rejectedReplies() == order.rejected,
                               name + "rejections miscounted"_s);
        }
        for (const DeviceEntry& entry : m_devices) {
            m_orderRules.checkDevice(*entry.state);
            const int expected = m_orderRules.pendingRequests(*entry.state);
            const int pending = entry.object->pendingRequests();
            m_journal->require(pending == expected,
                               "%1 requests are pending, %2 are waited for"_s.arg(pending).arg(expected));
            m_journal->require(entry.object->isConnected() == entry.state->connected, "connected wrongly"_s);
        }
        for (const BackendEntry& entry : m_backends) {
            const Backend& backend = *entry.state;
            m_treatmentRules.check(backend);
            const bool connected =
                backend.tool != nullptr && backend.tool->device != nullptr && backend.tool->device->connected;
            m_journal->require(entry.object->isConnected() == connected, "a backend is connected wrongly"_s);
            m_journal->require(entry.object->hasPendingTreatments() == !backend.actions.empty() ||
                                   !backend.questions.empty(),
                               "a backend's treatments are miscounted"_s);
        }
        const int working = m_orderRules.workingCommands();
        m_journal->require(m_workingCommands == working,
                           "%1 commands live, %2 work"_s.arg(m_workingCommands).arg(working));
        checkMessages();
    }

    /// Every message is an error report that a command owes, or Qt's about the length of a pulse.
    void checkMessages()
    {
        for (const QString& text : m_log->texts()) {
            if (text.contains("ERROR: "_s)) {
                --m_orderRules.errorReports;
            } else if (text == "QObject::startTimer: Timers cannot have negative intervals"_s) {
                --m_orderRules.timerWarnings;
            } else {
                m_journal->require(false, "unexpected message: "_s + text);
            }
        }
        m_log.emplace();
        m_journal->require(m_orderRules.errorReports == 0, "error reports miscounted"_s);
        m_journal->require(m_orderRules.timerWarnings == 0, "timer warnings miscounted"_s);
    }

    void pump()
    {
        if (!isBelow(Place::Device) && m_places.back() != Place::Command) {
            note("lets an event loop run"_s);
            QCoreApplication::processEvents();
        }
    }

    void note(const QString& action) { m_journal->note(static_cast<int>(m_places.size()) - 1, action); }

    void makeDevice()
    {
        if (m_devices.size() >= c_mostDevices) {
            return;
        }
        note("makes a device"_s);
        DeviceEntry entry{std::make_unique<RecordingDevice>(m_scheduler), std::make_shared<Device>()};
        entry.object->onRequest = [this, state = entry.state](const auto& request) {
            requestArrives(*state, request.id);
        };
        entry.object->onCancel = [this, state = entry.state](quint64 request) {
            cancelArrives(*state, request);
        };
        entry.object->open();
        connect(entry.object.get(), &DDevice::stateChanged, this, [this, state = entry.state] {
            m_orderRules.stateTold(*state);
            moment(Place::Listener);
        });
        m_devices.push_back(std::move(entry));
    }

    void makeTool()
    {
        if (m_tools.size() >= c_mostTools) {
            closeTool();
            return;
        }
        if (m_devices.empty()) {
            makeDevice();
        }
        auto state = std::make_shared<Tool>();
        state->name = "tool%1"_s.arg(m_random.below(3));
        DDevice* device = nullptr;
        if (!m_devices.empty() && !m_random.chance(5)) {
            const DeviceEntry& entry = m_random.of(m_devices);
            device = entry.object.get();
            state->device = entry.state->going ? nullptr : entry.state;
        }
        QVariantList channels = toolChannels();
        for (int more = m_random.chance(20) ? c_manyChannels : 0; more > 0; --more) {
            channels.append(QVariantMap{{"id"_s, QString::number(more)}});
        }
        state->channels = channels.size();
        note("makes %1 with %2 channels"_s.arg(state->name).arg(channels.size()));
        auto object = std::make_unique<DTool>(QVariantMap{{"name"_s, state->name}, {"channels"_s, channels}},
                                              m_prototype, device);
        m_treatmentRules.addTool(state);
        m_tools.push_back({std::move(object), state});
    }

    void makeOrder()
    {
        if (m_tools.empty()) {
            makeTool();
            return;
        }
        if (m_orders.size() >= c_mostOrders) {
            destroyOrder();
            return;
        }
        const ToolEntry& tool = m_random.of(m_tools);
        const InvocationPlan plan = drawInvocation(m_random);
        OrderEntry entry{std::make_unique<DOrder>(tool.object.get(), plan.command, plan.arguments), nullptr};
        entry.state = m_orderRules.makeOrder(entry.object->id(), plan, tool.state);
        DOrder* order = entry.object.get();
        const auto state = entry.state;
        watchOrder(order, state);
        m_orders.push_back(std::move(entry));
        if (m_random.chance(85)) {
            start(order, *state);
        } else {
            note("makes order %1 of %2"_s.arg(state->id).arg(plan.command));
        }
    }

    void makeBackend()
    {
        if (m_backends.size() >= c_mostBackends) {
            return;
        }
        const QString tool = "tool%1"_s.arg(m_random.below(3));
        note("makes a backend of "_s + tool);
        BackendEntry entry{std::make_unique<WatchedBackend>(), m_treatmentRules.makeBackend(tool)};
        entry.object->setName(tool);
        entry.object->onReply = [this, state = entry.state](int id, const QString& name) {
            m_treatmentRules.replied(*state, id, name);
            moment(Place::Listener);
        };
        entry.object->onRelease = [this, state = entry.state](int id, const QString& name, bool success) {
            m_treatmentRules.released(*state, id, name, success);
            moment(Place::Listener);
        };
        connect(entry.object.get(), &DAbstractPluginBackend::abstractBackendInitialized, this,
                [this, state = entry.state] { m_treatmentRules.initialized(*state); });
        m_backends.push_back(std::move(entry));
    }

    void startOrder()
    {
        const OrderEntry& entry = m_random.of(m_orders);
        const auto state = entry.state;
        start(entry.object.get(), *state);
    }

    void stopOrder()
    {
        const OrderEntry& entry = m_random.of(m_orders);
        const auto state = entry.state;
        note("stops order %1"_s.arg(state->id));
        m_orderRules.stop(*state);
        entry.object->stop();
        m_journal->require(state->decided, "an order does not end where it is stopped"_s);
    }

    void destroyOrder()
    {
        OrderEntry entry = taken(m_orders, m_random.below(static_cast<int>(m_orders.size())));
        note("destroys order %1"_s.arg(entry.state->id));
        ++m_destroyed;
        m_orderRules.destroy(*entry.state);
        entry.object.reset();
        m_orderRules.orderGone(*entry.state);
    }

    /// To a request that may be over, or was never sent; once or more often.
    void answer()
    {
        const auto waits = [this](const DeviceEntry& entry) {
            return !m_orderRules.waitingRequests(*entry.state).empty();
        };
        const auto waiting = std::find_if(m_devices.cbegin(), m_devices.cend(), waits);
        const DeviceEntry& entry =
            waiting != m_devices.cend() && m_random.chance(70) ? *waiting : m_random.of(m_devices);
        std::vector<quint64> requests = m_orderRules.waitingRequests(*entry.state);
        if (requests.empty() || m_random.chance(15)) {
            requests = m_orderRules.recentRequests();
            requests.push_back(0);
        }
        const quint64 request = m_random.of(requests);
        for (int times = m_random.chance(80) ? 1 : 2 + m_random.below(2); times > 0; --times) {
            Answer answer;
            if (m_random.chance(10)) {
                answer.failure = {DFailure::Kind::RefusedByDevice,
                                  DWording::told("burnt %1"_s.arg(m_random.below(100)))};
                note("refuses request %1: %2"_s.arg(QString::number(request), answer.failure.text.english()));
                entry.object->refuse(request, answer.failure.text.english());
            } else {
                const ReplyShape& shape =
                    m_random.chance(60) ? replyShapes().constFirst() : m_random.of(replyShapes());
                answer.reply = shape.reply;
                note("answers request %1 with %2"_s.arg(request).arg(QString::fromUtf8(shape.name)));
                answer.timeUs = m_scheduler->now() - m_random.below(1000);
                entry.object->reply(request, answer.reply, answer.timeUs);
            }
            m_orderRules.answer(*entry.state, request, answer);
        }
    }

    void plug()
    {
        const DeviceEntry& entry = m_random.of(m_devices);
        RecordingDevice* device = entry.object.get();
        const auto state = entry.state;
        if (!state->connected && m_random.chance(90)) {
            note("plugs a device in"_s);
            m_orderRules.connect(*state);
            device->restore();
        } else if (m_random.chance(5)) {
            note("closes a device"_s);
            m_orderRules.close(*state);
            device->close();
        } else if (m_random.chance(25)) {
            const QString problem = "cable %1 pulled"_s.arg(m_random.below(100));
            note("unplugs a device: "_s + problem);
            m_orderRules.disconnect(*state, problem);
            device->lose(problem);
        }
    }

    void advance()
    {
        const std::vector<qint64> times = m_orderRules.dueTimes();
        qint64 us = 1 + m_random.below(60000);
        if (!times.empty() && m_random.chance(35)) {
            constexpr qint64 longest = 100000000;
            const qint64 untilDue = m_random.of(times) - m_scheduler->now();
            us = std::clamp<qint64>(untilDue + m_random.below(3) - 1, 0, longest);
        }
        note("lets %1 us pass"_s.arg(us));
        m_scheduler->elapse(us);
    }

    void queueTreatments()
    {
        const BackendEntry& entry = m_random.of(m_backends);
        const int count = m_random.chance(3) ? c_manyChannels + 5 : 1 + m_random.below(3);
        note("queues %1 treatments from number %2 on"_s.arg(count).arg(m_lastTreatment + 1));
        for (int i = 0; i < count; ++i) {
            Treatment treatment{++m_lastTreatment, drawInvocation(m_random)};
            while (treatment.plan.deed ==
                   InvocationPlan::Deed::Stops) { // which makes no command that tells of it
                treatment.plan = drawInvocation(m_random);
            }
            const bool accepted =
                entry.object->queueTreatment(treatment.id, treatment.plan.command, treatment.plan.arguments);
            m_treatmentRules.queued(*entry.state, treatment, accepted);
        }
    }

    void closeTool()
    {
        ToolEntry entry = taken(m_tools, m_random.below(static_cast<int>(m_tools.size())));
        note("closes "_s + entry.state->name);
        ++m_destroyed;
        m_orderRules.closeTool(entry.state);
        m_treatmentRules.closeTool(entry.state);
        entry.object.reset();
        entry.state->device = nullptr;
    }

    void destroyDevice()
    {
        DeviceEntry entry = taken(m_devices, m_random.below(static_cast<int>(m_devices.size())));
        note("destroys a device"_s);
        ++m_destroyed;
        m_orderRules.destroyDevice(*entry.state);
        entry.object.reset();
        for (const ToolEntry& tool : m_tools) {
            if (tool.state->device == entry.state) {
                tool.state->device = nullptr;
            }
        }
    }

    void destroyBackend()
    {
        BackendEntry entry = taken(m_backends, m_random.below(static_cast<int>(m_backends.size())));
        note("destroys a backend"_s);
        ++m_destroyed;
        m_treatmentRules.destroyBackend(entry.state);
        if (entry.state->running != nullptr) {
            m_orderRules.destroy(*entry.state->running);
        }
        entry.object.reset();
    }

    void requestArrives(const Device& device, quint64 request)
    {
        note("request %1"_s.arg(request));
        m_orderRules.requestArrives(device, request);
        moment(Place::Device);
    }

    void cancelArrives(Device& device, quint64 request)
    {
        m_orderRules.cancelBegins(device, request);
        moment(Place::Device);
        m_orderRules.cancelEnds(device, request);
    }

    void watchOrder(DOrder* order, const std::shared_ptr<Order>& state)
    {
        connect(order, &DOrder::resultUpdated, this, [this] { moment(Place::Listener); });
        connect(order, &DOrder::eventReceived, this, [this, state](const QVariantMap& event, qint64 timeUs) {
            Q_UNUSED(event)
            m_orderRules.eventTold(*state, timeUs);
            moment(Place::Listener);
        });
        connect(order, &DOrder::finished, this, [this, order, state](bool success) {
            m_orderRules.finishedTold(*state, order->failure());
            m_journal->require(order->isSuccessful() == success && !order->failure() == success,
                               "an order tells and keeps two outcomes"_s);
            m_journal->require(!success || !state->value.isValid() ||
                                   order->results().value("value"_s) == state->value,
                               "an order reports another value than it was sent"_s);
            moment(Place::Listener);
        });
    }

    void start(DOrder* order, Order& state)
    {
        note("starts order %1: %2 %3"_s.arg(
            QString::number(state.id), state.plan.command,
            QString::fromUtf8(
                QJsonDocument::fromVariant(state.plan.arguments).toJson(QJsonDocument::Compact))));
        m_orderRules.start(state);
        order->start();
    }

    Order& stateOf(quint64 order) const { return *m_orderRules.orders().at(order); }

    std::shared_ptr<Backend> stateOf(const QObject* backend) const
    {
        const auto found =
            std::find_if(m_backends.cbegin(), m_backends.cend(),
                         [backend](const BackendEntry& entry) { return entry.object.get() == backend; });
        m_journal->require(found != m_backends.cend(), "a treatment of a backend that is gone"_s);
        return found->state;
    }

    /// An order that the run has not made is that of a treatment: it hangs below its backend.
    void commandLinked(DOrder* order) override
    {
        if (m_orderRules.orders().count(order->id()) == 0) {
            const auto backend = stateOf(order->parent()->parent());
            const Treatment& treatment = m_treatmentRules.orderMade(*backend);
            const auto state = m_orderRules.makeOrder(order->id(), treatment.plan, backend->tool);
            backend->running = state;
            m_orderRules.start(*state);
            watchOrder(order, state);
            connect(order, &QObject::destroyed, this, [this, state] { m_orderRules.orderGone(*state); });
        }
        ++m_workingCommands;
        m_orderRules.commandMade(stateOf(order->id()));
    }

    void executeBegins(quint64 order) override
    {
        moment(Place::Command);
        m_orderRules.executeBegins(stateOf(order));
    }

    void executeEnds(quint64 order, bool accepted) override
    {
        m_orderRules.executeEnds(stateOf(order), accepted);
        moment(Place::Command);
    }

    void sendBegins(quint64 order, const QString& instruction, const QVariantMap&, int timeoutMs) override
    {
        m_orderRules.sendBegins(stateOf(order), instruction, timeoutMs);
    }
    void sendEnds(quint64, quint64 request) override { m_orderRules.sendEnds(request); }

    void replyBegins(quint64 order, quint64 request, const QVariantMap& reply) override
    {
        m_orderRules.replyBegins(stateOf(order), request, reply);
        moment(Place::Command);
        m_orderRules.delegateRuns(stateOf(order), reply);
    }

    void replyEnds(quint64 order, quint64 request, bool accepted) override
    {
        moment(Place::Command);
        m_orderRules.replyEnds(stateOf(order), request, accepted);
    }

    void finishBegins(quint64 order, bool ok) override
    {
        m_orderRules.finishBegins(stateOf(order), ok);
        moment(Place::Listener);
    }

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
