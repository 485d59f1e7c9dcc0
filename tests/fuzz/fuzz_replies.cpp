#include "support/fuzzer_process.h"
#include "support/lifecycle_rules.h"
#include "support/require.h"
#include "support/variants.h"

#include <channel_entry.h>
#include <literals.h>
#include <plugin_management/d_tool.h>
#include <recording_device.h>

#include <functional>
#include <limits>
#include <memory>
#include <vector>

// Orders of the six commands, whose parameters, replies and fates come from the bytes: replies of all kinds,
// to the right request and to others, early, late, twice; stops, losses and destructions at any moment, also
// from inside of what an order tells.

namespace {

QStringList words()
{
    return {"channel"_s,  "value"_s,  "state"_s,   "duration"_s, "dutyCycle"_s, "edge"_s,
            "channels"_s, "values"_s, "LAMP"_s,    "DOOR"_s,     "BARE"_s,      "ON"_s,
            "OFF"_s,      "BLINK"_s,  "PULSE"_s,   "RE"_s,       "FE"_s,        "HL"_s,
            "LL"_s,       "doneOk"_s, "orderId"_s, QString()};
}

QVariantMap toolConfiguration()
{
    return {
        {"name"_s, "T"_s},
        {"channels"_s, QVariantList{channelEntry("LAMP"_s, {{"direction"_s, "out"_s}, {"link"_s, "line0"_s}}),
                                    channelEntry("DOOR"_s, {{"direction"_s, "in"_s}, {"link"_s, "line1"_s}}),
                                    channelEntry("BARE"_s, {{"direction"_s, "out"_s}})}}};
}

/// The device, the tool and the orders of one input.
class Play
{
public:
    explicit Play(FuzzedDataProvider* data)
        : m_data(data)
        , m_variants(data, words())
        , m_device(std::make_unique<RecordingDevice>(&fuzzerTime()))
        , m_tool(std::make_unique<DTool>(toolConfiguration(), watchedPlugin(), m_device.get()))
    {
        m_device->open();
        m_device->onRequest = [this](const RecordingDevice::Request& request) {
            m_requests.push_back(request.id);
            if (m_data->ConsumeBool()) {
                answer(request.id);
            }
        };
    }
    Q_DISABLE_COPY(Play)

    void act()
    {
        const Deed begin = [this] { startOrder(); };
        const Deed reply = [this] { answer(anyRequest()); };
        const Deed wait = [this] {
            passTime(m_data->ConsumeBool()
                         ? m_data->ConsumeIntegralInRange(0, 5000)
                         : m_data->ConsumeIntegralInRange(0, std::numeric_limits<int>::max()));
        };
        const Deed reaction = [this] { react(); };
        doOne({begin, begin, reply, reply, reply, settle, settle, wait, reaction, reaction});
    }

    /// Every order is over or is stopped, and whatever is said to it then changes nothing.
    void end()
    {
        // No bytes are left: from here on nothing reacts any more.
        settle();
        for (const auto& order : m_orders) {
            order->stop();
            require(order->state() == DOrder::State::Finished, "an order that was stopped has ended");
        }
        settle();
        if (m_device == nullptr) {
            return;
        }
        require(m_device->pendingRequests() == 0, "no request outlives its order");
        const int logged = loggedMessages();
        for (const quint64 id : m_requests) {
            m_device->reply(id, {});
        }
        settle();
        require(loggedMessages() == logged, "no command sees a reply after its order's end");
    }

private:
    using Deed = std::function<void()>;

    void startOrder()
    {
        static const QStringList commands = {"setValue"_s,       "switchValue"_s,   "getValue"_s,
                                             "startListening"_s, "init"_s,          "listenToAll"_s,
                                             "stopListening"_s,  "stopTheCommand"_s};
        const QString command =
            m_data->ConsumeIntegralInRange(0, 15) == 0 ? m_variants.text() : oneOf(commands);
        QVariantMap arguments = m_data->ConsumeBool() ? QVariantMap() : m_variants.map(2);
        if (m_data->ConsumeIntegralInRange(0, 3) != 0) {
            arguments.insert("channel"_s, "LAMP"_s);
        }
        if (command == "setValue"_s) {
            static const QStringList states = {"ON"_s, "OFF"_s, "BLINK"_s, "PULSE"_s};
            arguments.insert("state"_s, oneOf(states));
            arguments.insert("duration"_s,
                             m_data->ConsumeBool() ? m_data->ConsumeIntegral<int>() : m_variants.value(0));
        } else if (command == "startListening"_s) {
            static const QStringList edges = {QString(), "RE"_s, "FE"_s, "HL"_s, "LL"_s};
            arguments.insert("edge"_s, oneOf(edges));
        }
        m_orders.push_back(std::make_unique<DOrder>(m_tool.get(), command, arguments));
        DOrder* order = m_orders.back().get();
        watchOrder(order);
        const auto sometimes = [this] {
            if (m_data->ConsumeIntegralInRange(0, 3) == 3) {
                react();
            }
        };
        QObject::connect(order, &DOrder::resultUpdated, m_device.get(), sometimes);
        QObject::connect(order, &DOrder::eventReceived, m_device.get(), sometimes);
        QObject::connect(order, &DOrder::finished, m_device.get(), sometimes);
        order->start();
    }

    void answer(quint64 id)
    {
        if (m_device == nullptr) {
            return;
        }
        doOne({[&] { m_device->refuse(id, m_variants.text() + QLatin1Char('.')); },
               [&] { m_device->reply(id, m_variants.map(2)); },
               [&] {
                   m_device->reply(id, {{"values"_s, QVariantList{m_variants.value(1)}}});
               },
               [&] {
                   m_device->reply(id, {{"values"_s, m_variants.value(1)}});
               },
               [&] {
                   m_device->reply(id, {{"value"_s, m_variants.value(1)}});
               }});
    }

    /// What may come at any moment, also from inside of an order's signals.
    void react()
    {
        DOrder* order = anyOrder();
        const auto forget = [this] {
            if (!m_orders.empty()) {
                const std::unique_ptr<DOrder> gone = std::move(m_orders.front());
                m_orders.erase(m_orders.begin());
            }
        };
        const auto stop = [order] {
            if (order != nullptr) {
                order->stop();
            }
        };
        const auto start = [order] {
            if (order != nullptr) {
                order->start();
            }
        };
        doOne({[this] { answer(anyRequest()); }, stop, forget, [this] { m_tool.reset(); }, start,
               [this] { changeConnection(); }});
    }

    void changeConnection()
    {
        if (m_device == nullptr) {
            return;
        }
        const Deed restore = [this] { m_device->restore(); };
        const Deed lose = [this] { m_device->lose(m_variants.text() + QLatin1Char('.')); };
        doOne({[this] { m_device.reset(); }, restore, restore, [this] { m_device->close(); }, lose, lose});
    }

    void doOne(const std::vector<Deed>& deeds)
    {
        deeds.at(m_data->ConsumeIntegralInRange<std::size_t>(0, deeds.size() - 1))();
    }

    QString oneOf(const QStringList& texts)
    {
        return texts.at(m_data->ConsumeIntegralInRange(0, texts.size() - 1));
    }

    DOrder* anyOrder()
    {
        return m_orders.empty()
                   ? nullptr
                   : m_orders.at(m_data->ConsumeIntegralInRange<std::size_t>(0, m_orders.size() - 1)).get();
    }

    quint64 anyRequest()
    {
        if (m_requests.empty() || m_data->ConsumeIntegralInRange(0, 15) == 0) {
            return m_data->ConsumeIntegral<quint64>();
        }
        return m_requests.at(m_data->ConsumeIntegralInRange<std::size_t>(0, m_requests.size() - 1));
    }

    FuzzedDataProvider* m_data;
    Variants m_variants;
    std::unique_ptr<RecordingDevice> m_device;
    std::unique_ptr<DTool> m_tool;
    std::vector<std::unique_ptr<DOrder>> m_orders;
    std::vector<quint64> m_requests;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* bytes, std::size_t size)
{
    beginInput();
    FuzzedDataProvider data(bytes, size);
    Play play(&data);
    while (data.remaining_bytes() > 0) {
        play.act();
    }
    play.end();
    return 0;
}
