#include "common_scripts.h"
#include "workbench.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

namespace {

/// A command that sends instruction with a time limit and accepts every reply.
std::function<void(CommandScript&)> sends(const QString& instruction, int timeoutMs)
{
    return [=](CommandScript& script) {
        script.stopName = "rest"_s;
        script.execute = [=](ScriptedCommand& command) {
            command.send(instruction, {{"channel"_s, "line0"_s}}, timeoutMs);
            return true;
        };
    };
}

} // namespace

class TestOrderDeadlines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutReplyTheOrderFailsNamingInstructionChannelAndTime()
    {
        Workbench bench(sends("getValue"_s, 20));
        const auto order = bench.order();
        QSignalSpy finished(order.get(), &DOrder::finished);
        QElapsedTimer clock;
        clock.start();
        order->start();
        QVERIFY(finished.wait());
        QVERIFY(clock.elapsed() >= 20);
        const QString reason = "no reply to \"getValue\" of channel \"line0\" within 20 ms"_s;
        QCOMPARE(finished.at(0), (QVariantList{false, reason}));
        QCOMPARE(order->reason(), reason);
        QCOMPARE(bench.device->cancelled, QVector<quint64>{bench.device->lastId()});
    }

    void theTimeCountsFromTheSendingOfEachRequest()
    {
        quint64 second = 0;
        Workbench bench([&](CommandScript& script) {
            script.execute = [](ScriptedCommand& command) {
                command.send("getValue"_s, {}, 0);
                return true;
            };
            script.onReply = [&](ScriptedCommand& command, quint64, const QVariantMap&) {
                second = command.send("setValues"_s, {}, 10);
                return true;
            };
        });
        const auto order = bench.order();
        QSignalSpy finished(order.get(), &DOrder::finished);
        order->start();
        bench.device->reply(bench.device->lastId(), {});
        QVERIFY(finished.wait());
        QCOMPARE(order->reason(), "no reply to \"setValues\" within 10 ms"_s);
        QCOMPARE(bench.device->cancelled, QVector<quint64>{second});
    }

    void aListeningOrderWaitsForItsFirstReplyOnly()
    {
        Workbench bench(sends("listenEvents"_s, 10));
        const auto order = bench.order();
        order->start();
        bench.device->reply(bench.device->lastId(), {});
        deliver();
        const auto silent = bench.order();
        QSignalSpy finished(silent.get(), &DOrder::finished);
        silent->start();
        QVERIFY(finished.wait());
        QCOMPARE(silent->reason(), "no reply to \"listenEvents\" of channel \"line0\" within 10 ms"_s);
        QCOMPARE(order->state(), DOrder::State::Running);
    }

    void aReplyAfterTheTimeIsDropped()
    {
        int replies = 0;
        Workbench bench(sends("getValue"_s, 1));
        bench.script->onReply = [&](ScriptedCommand&, quint64, const QVariantMap&) { return ++replies > 0; };
        const auto order = bench.order();
        QSignalSpy finished(order.get(), &DOrder::finished);
        order->start();
        QVERIFY(finished.wait());
        bench.device->reply(bench.device->lastId(), {});
        deliver();
        QCOMPARE(replies, 0);
        QCOMPARE(finished.count(), 1);
    }
};

QTEST_GUILESS_MAIN(TestOrderDeadlines)

#include "tst_order_deadlines.moc"
