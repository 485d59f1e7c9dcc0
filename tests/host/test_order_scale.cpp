#include "common_scripts.h"
#include "workbench.h"

#include <QTest>

#include <vector>

class TestOrderScale : public QObject
{
    Q_OBJECT

    static constexpr int c_count = 10000;

    using Orders = std::vector<std::unique_ptr<DOrder>>;

    static Orders startMany(Workbench& bench)
    {
        Orders orders;
        for (int i = 0; i < c_count; ++i) {
            orders.push_back(bench.start());
        }
        return orders;
    }

    static void answerAll(Workbench& bench)
    {
        for (const auto& request : qAsConst(bench.device->requests)) {
            bench.device->reply(request.id, {{"value"_s, 1}});
        }
        deliver();
    }

private Q_SLOTS:
    void tenThousandOrdersRunAtOnceAndAllEnd()
    {
        Workbench bench(fillReader);
        const Orders orders = startMany(bench);
        answerAll(bench);
        const auto succeeded = std::count_if(orders.cbegin(), orders.cend(),
                                             [](const auto& order) { return order->isSuccessful(); });
        QCOMPARE(static_cast<int>(succeeded), c_count);
        QCOMPARE(bench.workingCommands(), 0);
    }

    void tenThousandListenersHearAndStop()
    {
        Workbench bench(fillListener);
        int events = 0;
        const Orders orders = startMany(bench);
        for (const auto& order : orders) {
            connect(order.get(), &DOrder::eventReceived, [&events] { ++events; });
        }
        answerAll(bench);
        QCOMPARE(events, c_count);
        for (const auto& order : orders) {
            order->stop();
        }
        QCOMPARE(bench.device->pendingRequests(), 0);
    }

    void oneCommandMaySendTenThousandRequests()
    {
        Workbench bench(fillReader);
        bench.script->execute = [](ScriptedCommand& command) {
            for (int i = 0; i < c_count; ++i) {
                command.send("getValue"_s, {}, 4000);
            }
            return true;
        };
        const auto order = bench.start();
        answerAll(bench);
        QVERIFY(order->isSuccessful());
    }

    void tenThousandRequestsAreLostWithTheirDevice()
    {
        Workbench bench(fillListener);
        const Orders orders = startMany(bench);
        bench.device->lose("cable pulled"_s);
        deliver();
        QCOMPARE(orders.back()->failure().text.english(), "cable pulled"_s);
        QCOMPARE(bench.workingCommands(), 0);
    }

    void aToolOfTenThousandChannelsIsSearchedAtOnce()
    {
        QVariantList channels;
        for (int i = 0; i < c_count; ++i) {
            channels.append(channelEntry(QString::number(i), {{"link"_s, "line%1"_s.arg(i)}}));
        }
        const DTool tool({{"channels"_s, channels}}, ScriptedPlugin(), nullptr);
        int found = 0;
        for (int i = 0; i < c_count; ++i) {
            found += tool.getLinkedChannel(QString::number(i)) == "line%1"_s.arg(i) ? 1 : 0;
        }
        QCOMPARE(found, c_count);
    }
};

QTEST_GUILESS_MAIN(TestOrderScale)
#include "test_order_scale.moc"
