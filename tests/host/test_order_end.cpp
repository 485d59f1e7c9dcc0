#include "common_scripts.h"
#include "workbench.h"

#include <utilities/d_timer.h>

#include <QSignalSpy>
#include <QTest>

namespace {

void declareTwoResults(CommandScript& script)
{
    script.results = {{"one"_s, "int"_s, "One"_s, 0}, {"two"_s, "int"_s, "Two"_s, 0}};
}

/// Fails the test unless the order has ended once, through finishTheCommand, and let its command go.
void verifyEndedOnce(const Workbench& bench, const DOrder& order, const QSignalSpy& finished)
{
    QCOMPARE(order.state(), DOrder::State::Finished);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0), QVariantList{order.isSuccessful()});
    QCOMPARE(bench.script->finishes, 1);
    QCOMPARE(bench.script->outcomes, QVector<bool>{order.isSuccessful()});
    QCOMPARE(bench.workingCommands(), 0);
    QCOMPARE(bench.device->pendingRequests(), 0);
}

} // namespace

class TestOrderEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anUpdateWithoutRequestIsEnough()
    {
        Workbench bench([](CommandScript& script) {
            declareTwoResults(script);
            script.execute = [](ScriptedCommand& command) {
                return command.commandUpdateResult("one"_s, 1) && command.commandUpdateResult("two"_s, 2);
            };
        });
        const auto order = bench.order();
        QSignalSpy finished(order.get(), &DOrder::finished);
        order->start();
        QVERIFY(order->isSuccessful());
        QCOMPARE(order->results(), (QVariantMap{{"one"_s, 1}, {"two"_s, 2}}));
        verifyEndedOnce(bench, *order, finished);
    }

    void theOrderEndsWhenEveryResultIsThereAndNothingIsPending()
    {
        Workbench bench([](CommandScript& script) {
            declareTwoResults(script);
            script.execute = [](ScriptedCommand& command) {
                command.send("getValue"_s);
                command.send("getValue"_s);
                return true;
            };
            script.onReply = [](ScriptedCommand& command, quint64, const QVariantMap& reply) {
                command.commandSetReply(reply);
                return true;
            };
        });
        const auto order = bench.order();
        QSignalSpy finished(order.get(), &DOrder::finished);
        order->start();
        bench.device->reply(bench.device->requests.at(0).id, {{"one"_s, 1}, {"two"_s, 2}});
        deliver();
        QCOMPARE(order->state(), DOrder::State::Running);
        bench.device->reply(bench.device->requests.at(1).id, {});
        deliver();
        QVERIFY(order->isSuccessful());
        verifyEndedOnce(bench, *order, finished);
    }

    void anOrderThatCanNeverCompleteFailsNamingWhatIsMissing()
    {
        Workbench bench([](CommandScript& script) {
            declareTwoResults(script);
            script.execute = [](ScriptedCommand& command) {
                command.send("getValue"_s);
                return true;
            };
        });
        const auto order = bench.order();
        QSignalSpy finished(order.get(), &DOrder::finished);
        order->start();
        bench.device->reply(bench.device->lastId(), {});
        deliver();
        QCOMPARE(order->failure().text,
                 "the command waits for nothing more, without having reported one, two"_s);
        verifyEndedOnce(bench, *order, finished);
    }

    void aCommandMayReportFromItsTimer_data()
    {
        QTest::addColumn<bool>("whole");
        QTest::newRow("result by result") << false;
        QTest::newRow("as a whole reply") << true;
    }

    void aCommandMayReportFromItsTimer()
    {
        QFETCH(bool, whole);
        Workbench bench([whole](CommandScript& script) {
            declareTwoResults(script);
            script.execute = [whole](ScriptedCommand& command) {
                command.send("setValues"_s);
                auto* timer = new DTimer(&command);
                timer->setSingleShot(true);
                connect(timer, &QTimer::timeout, &command, [&command, whole] {
                    if (whole) {
                        command.commandSetReply({{"one"_s, 1}, {"two"_s, 2}});
                    } else {
                        command.commandUpdateResult("one"_s, 1);
                        command.commandUpdateResult("two"_s, 2);
                    }
                });
                timer->start(5);
                return true;
            };
        });
        const auto order = bench.order();
        QSignalSpy finished(order.get(), &DOrder::finished);
        order->start();
        bench.device->reply(bench.device->lastId(), {});
        deliver();
        QCOMPARE(order->state(), DOrder::State::Running);
        QVERIFY(finished.wait());
        QVERIFY(order->isSuccessful());
        deliver();
        verifyEndedOnce(bench, *order, finished);
    }

    void anOrderFailsWhenTheLastTimerOfItsCommandBringsNothing()
    {
        Workbench bench([](CommandScript& script) {
            declareTwoResults(script);
            script.execute = [](ScriptedCommand& command) {
                command.send("setValues"_s);
                auto* timer = new DTimer(&command);
                timer->setSingleShot(true);
                timer->start(5);
                return true;
            };
        });
        const auto order = bench.order();
        QSignalSpy finished(order.get(), &DOrder::finished);
        order->start();
        bench.device->reply(bench.device->lastId(), {});
        QVERIFY(finished.wait());
        QCOMPARE(order->failure().text,
                 "the command waits for nothing more, without having reported one, two"_s);
        verifyEndedOnce(bench, *order, finished);
    }

    void theCommandMayFinishItself_data()
    {
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("reason");
        QTest::newRow("with success") << true << QString();
        QTest::newRow("as failed") << false << "the command failed"_s;
    }

    void theCommandMayFinishItself()
    {
        QFETCH(bool, ok);
        QFETCH(QString, reason);
        Workbench bench([ok](CommandScript& script) {
            declareTwoResults(script);
            script.execute = [](ScriptedCommand& command) {
                command.send("listenEvents"_s);
                return true;
            };
            script.onReply = [ok](ScriptedCommand& command, quint64, const QVariantMap&) {
                bool outcome = ok;
                command.commandFinish(outcome);
                return true;
            };
        });
        const auto order = bench.order();
        QSignalSpy finished(order.get(), &DOrder::finished);
        order->start();
        bench.device->reply(bench.device->lastId(), {});
        deliver();
        QCOMPARE(order->isSuccessful(), ok);
        QCOMPARE(order->failure().text, reason);
        verifyEndedOnce(bench, *order, finished);
    }

    void aListeningOrderRunsUntilItIsStopped()
    {
        Workbench bench(fillListener);
        const auto order = bench.order();
        QSignalSpy finished(order.get(), &DOrder::finished);
        order->start();
        QVERIFY(order->isListening());
        const quint64 id = bench.device->lastId();
        for (int level = 0; level < 100; ++level) {
            bench.device->reply(id, {{"value"_s, level}});
        }
        deliver();
        QCOMPARE(order->state(), DOrder::State::Running);
        order->stop();
        QVERIFY(order->isSuccessful());
        QVERIFY(!order->isListening());
        QCOMPARE(bench.device->cancelled, QVector<quint64>{id});
        QCOMPARE(order->results(), (QVariantMap{{"value"_s, 99}}));
        verifyEndedOnce(bench, *order, finished);
    }

    void theCommandMayStopItsOwnListening()
    {
        Workbench bench([](CommandScript& script) {
            fillListener(script);
            script.onReply = [](ScriptedCommand& command, quint64 id, const QVariantMap& reply) {
                command.stopTheInstruction(id);
                return command.commandUpdateResult("value"_s, reply.value("value"_s));
            };
        });
        const auto order = bench.order();
        QSignalSpy finished(order.get(), &DOrder::finished);
        order->start();
        bench.device->reply(bench.device->lastId(), {{"value"_s, 1}});
        bench.device->reply(bench.device->lastId(), {{"value"_s, 2}});
        deliver();
        QVERIFY(order->isSuccessful());
        QCOMPARE(order->results(), (QVariantMap{{"value"_s, 1}}));
        verifyEndedOnce(bench, *order, finished);
    }

    void startingAndStoppingAgainChangeNothing()
    {
        Workbench bench(fillListener);
        const auto order = bench.order();
        QSignalSpy finished(order.get(), &DOrder::finished);
        order->start();
        order->start();
        QCOMPARE(bench.device->requests.size(), 1);
        order->stop();
        order->stop();
        order->start();
        QVERIFY(order->isSuccessful());
        QCOMPARE(bench.device->requests.size(), 1);
        verifyEndedOnce(bench, *order, finished);
    }

    void lateRepliesAreDropped()
    {
        int replies = 0;
        Workbench bench([&](CommandScript& script) {
            fillListener(script);
            script.onReply = [&](ScriptedCommand&, quint64, const QVariantMap&) { return ++replies > 0; };
        });
        const auto order = bench.order();
        QSignalSpy events(order.get(), &DOrder::eventReceived);
        order->start();
        bench.device->reply(bench.device->lastId(), {{"value"_s, 1}});
        order->stop();
        bench.device->reply(bench.device->lastId(), {{"value"_s, 2}});
        deliver();
        QCOMPARE(replies, 0);
        QCOMPARE(events.count(), 0);
    }

    void nothingIsStoredOrSentOnceTheOrderEnds()
    {
        bool stored = true;
        quint64 sent = 1;
        Workbench bench([&](CommandScript& script) {
            fillListener(script);
            script.onFinish = [&](ScriptedCommand& command) {
                stored = command.commandUpdateResult("value"_s, 9);
                sent = command.send("getValue"_s);
                command.commandSetReply({{"value"_s, 9}});
            };
        });
        const auto order = bench.order();
        QSignalSpy updated(order.get(), &DOrder::resultUpdated);
        QSignalSpy events(order.get(), &DOrder::eventReceived);
        order->start();
        order->stop();
        QVERIFY(!stored);
        QCOMPARE(sent, quint64{0});
        QCOMPARE(updated.count(), 0);
        QCOMPARE(events.count(), 0);
        QCOMPARE(bench.device->requests.size(), 1);
    }

    void theCommandIsDestroyedWhereTheOrderEnds()
    {
        Workbench bench(fillListener);
        const auto order = bench.order();
        bool goneBeforeTheEndIsTold = false;
        connect(order.get(), &DOrder::finished, this,
                [&] { goneBeforeTheEndIsTold = bench.script->latest.isNull(); });
        order->start();
        QVERIFY(!bench.script->latest.isNull());
        order->stop();
        QVERIFY(goneBeforeTheEndIsTold);
    }

    void ordersAreNumberedFromOneAndApart()
    {
        Workbench bench;
        const auto first = bench.order();
        const auto second = bench.order();
        QVERIFY(first->id() >= 1);
        QVERIFY(second->id() > first->id());
        QCOMPARE(first->commandName(), "work"_s);
        QCOMPARE(first->tool(), bench.tool.get());
    }

    void twoOrdersOfOneCommandShareNothing()
    {
        Workbench bench(fillListener);
        const auto first = bench.order();
        const auto second = bench.order();
        first->start();
        second->start();
        const quint64 id = bench.device->requests.at(0).id;
        bench.device->reply(id, {{"value"_s, 1}});
        deliver();
        QCOMPARE(first->results().value("value"_s), QVariant(1));
        QVERIFY(!second->results().value("value"_s).isValid());
        first->stop();
        QCOMPARE(second->state(), DOrder::State::Running);
        QCOMPARE(bench.device->cancelled, QVector<quint64>{id});
    }
};

QTEST_GUILESS_MAIN(TestOrderEnd)

#include "test_order_end.moc"
