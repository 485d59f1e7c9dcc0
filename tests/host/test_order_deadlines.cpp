#include "common_scripts.h"
#include "workbench.h"

#include <QTest>

class TestOrderDeadlines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTimeCountsFromTheSendingOfEachRequest()
    {
        Workbench bench([](CommandScript& script) {
            script.execute = [](ScriptedCommand& command) { return command.send("getValue"_s, {}, 0) != 0; };
            script.onReply = [](ScriptedCommand& command, quint64, const QVariantMap&) {
                return command.send("setValues"_s, {}, 10) != 0;
            };
        });
        const auto order = bench.order();
        order->start();
        bench.scheduler.advance(50000);
        bench.device->reply(bench.device->lastId(), {});
        deliver();
        bench.scheduler.advance(9999);
        QCOMPARE(order->state(), DOrder::State::Running);
        bench.scheduler.advance(1);
        QCOMPARE(order->failure().text, "no reply to \"setValues\" within 10 ms"_s);
        QCOMPARE(bench.device->cancelled, QVector<quint64>{bench.device->lastId()});
    }

    void aListeningOrderWaitsForItsFirstReplyOnly()
    {
        Workbench bench([](CommandScript& script) {
            fillListener(script);
            script.execute = [](ScriptedCommand& command) {
                return command.send("listenEvents"_s, {}, 10) != 0;
            };
        });
        const auto order = bench.order();
        const auto silent = bench.order();
        order->start();
        bench.device->reply(bench.device->lastId(), {{"value"_s, 1}});
        deliver();
        silent->start();
        bench.scheduler.advance(1000000);
        QCOMPARE(silent->failure().text, "no reply to \"listenEvents\" within 10 ms"_s);
        QCOMPARE(order->state(), DOrder::State::Running);
    }

    void aReplyAfterTheTimeIsDropped()
    {
        int replies = 0;
        Workbench bench([&](CommandScript& script) {
            script.execute = [](ScriptedCommand& command) { return command.send("getValue"_s, {}, 1) != 0; };
            script.onReply = [&](ScriptedCommand&, quint64, const QVariantMap&) { return ++replies > 0; };
        });
        const auto order = bench.order();
        order->start();
        bench.scheduler.advance(1000);
        QCOMPARE(order->state(), DOrder::State::Finished);
        bench.device->reply(bench.device->lastId(), {});
        deliver();
        QCOMPARE(replies, 0);
    }
};

QTEST_GUILESS_MAIN(TestOrderDeadlines)

#include "test_order_deadlines.moc"
