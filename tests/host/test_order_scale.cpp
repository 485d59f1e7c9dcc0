#include "common_scripts.h"
#include "workbench.h"

#include <QElapsedTimer>
#include <QTest>

#include <vector>

namespace {

constexpr int c_few = 1000;
constexpr int c_many = 10000;

/// Prints how much longer one of many takes than one of few: about 1 where the cost is in proportion.
void printRatio(const char* what, const std::function<void(int)>& work)
{
    const auto nsEach = [&work](int count) {
        QElapsedTimer clock;
        clock.start();
        work(count);
        return static_cast<double>(clock.nsecsElapsed()) / count;
    };
    const double few = nsEach(c_few);
    const double many = nsEach(c_many);
    qInfo("%s: %.0f ns each of %d, %.0f ns each of %d, ratio %.2f", what, few, c_few, many, c_many,
          many / few);
}

using Orders = std::vector<std::unique_ptr<DOrder>>;

Orders startMany(Workbench& bench, int count)
{
    Orders orders;
    for (int i = 0; i < count; ++i) {
        orders.push_back(bench.start());
    }
    return orders;
}

void answerAll(Workbench& bench)
{
    for (const auto& request : qAsConst(bench.device->requests)) {
        bench.device->reply(request.id, {{"value"_s, 1}});
    }
    deliver();
}

} // namespace

class TestOrderScale : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tenThousandOrdersRunAtOnceAndAllEnd()
    {
        printRatio("orders that read", [](int count) {
            Workbench bench(fillReader);
            const Orders orders = startMany(bench, count);
            answerAll(bench);
            const auto succeeded = std::count_if(orders.cbegin(), orders.cend(),
                                                 [](const auto& order) { return order->isSuccessful(); });
            QCOMPARE(static_cast<int>(succeeded), count);
            QCOMPARE(bench.workingCommands(), 0);
        });
    }

    void tenThousandListenersHearAndStop()
    {
        printRatio("orders that listen", [](int count) {
            Workbench bench(fillListener);
            int events = 0;
            const Orders orders = startMany(bench, count);
            for (const auto& order : orders) {
                connect(order.get(), &DOrder::eventReceived, [&events] { ++events; });
            }
            answerAll(bench);
            QCOMPARE(events, count);
            for (const auto& order : orders) {
                order->stop();
            }
            QCOMPARE(bench.device->pendingRequests(), 0);
        });
    }

    void oneCommandMaySendTenThousandRequests()
    {
        printRatio("requests of one command", [](int count) {
            Workbench bench(fillReader);
            bench.script->execute = [count](ScriptedCommand& command) {
                for (int i = 0; i < count; ++i) {
                    command.send("getValue"_s, {}, 4000);
                }
                return true;
            };
            const auto order = bench.start();
            answerAll(bench);
            QVERIFY(order->isSuccessful());
        });
    }

    void tenThousandRequestsAreLostWithTheirDevice()
    {
        printRatio("requests that are lost", [](int count) {
            Workbench bench(fillListener);
            const Orders orders = startMany(bench, count);
            bench.device->lose("cable pulled"_s);
            deliver();
            QCOMPARE(orders.back()->failure().text, "cable pulled"_s);
            QCOMPARE(bench.workingCommands(), 0);
        });
    }

    void aToolOfTenThousandChannelsIsSearchedAtOnce()
    {
        printRatio("channel look-ups", [](int count) {
            QVariantList channels;
            for (int i = 0; i < count; ++i) {
                channels.append(channelEntry(QString::number(i), {{"link"_s, "line%1"_s.arg(i)}}));
            }
            const DTool tool({{"channels"_s, channels}}, ScriptedPlugin({}), nullptr);
            int found = 0;
            for (int i = 0; i < count; ++i) {
                found += tool.getLinkedChannel(QString::number(i)) == "line%1"_s.arg(i) ? 1 : 0;
            }
            QCOMPARE(found, count);
        });
    }
};

QTEST_GUILESS_MAIN(TestOrderScale)

#include "test_order_scale.moc"
