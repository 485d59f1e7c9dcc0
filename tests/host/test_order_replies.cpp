#include "common_scripts.h"
#include "workbench.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

namespace {

QVariantMap value(int level)
{
    return {{"value"_s, level}};
}

} // namespace

class TestOrderReplies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void repliesReachTheDelegateFromTheEventLoopOnly()
    {
        bool executing = false;
        bool repliedInside = false;
        int replies = 0;
        Workbench bench([&](CommandScript& script) {
            script.execute = [&](ScriptedCommand& command) {
                executing = true;
                command.send("getValue"_s);
                executing = false;
                return true;
            };
            script.onReply = [&](ScriptedCommand&, quint64, const QVariantMap&) {
                repliedInside = executing;
                ++replies;
                return true;
            };
        });
        bench.device->onRequest = [&](const auto& request) { bench.device->reply(request.id, value(1)); };
        const auto order = bench.order();
        order->start();
        QCOMPARE(replies, 0);
        deliver();
        QCOMPARE(replies, 1);
        QVERIFY(!repliedInside);
    }

    void instructionsAreNumberedApartAndNeverZero()
    {
        QVector<quint64> given;
        QVector<quint64> answered;
        Workbench bench([&](CommandScript& script) {
            script.execute = [&](ScriptedCommand& command) {
                given = {command.send("getValue"_s), command.send("getValue"_s)};
                return true;
            };
            script.onReply = [&](ScriptedCommand&, quint64 id, const QVariantMap&) {
                answered.append(id);
                return true;
            };
        });
        const auto order = bench.order();
        order->start();
        QCOMPARE(given.size(), 2);
        QVERIFY(given.at(0) >= 1);
        QVERIFY(given.at(1) >= 1);
        QVERIFY(given.at(0) != given.at(1));
        bench.device->reply(given.at(1), {});
        bench.device->reply(given.at(0), {});
        deliver();
        QCOMPARE(answered, (QVector<quint64>{given.at(1), given.at(0)}));
        const auto second = bench.order();
        second->start();
        QVERIFY(!answered.contains(given.at(0)));
    }

    void aFreshProcessNumbersItsFirstInstructionOne() { QCOMPARE(s_firstInstruction, quint64{1}); }

    void aReplyUpdatesResultsAndEndsTheOrder()
    {
        Workbench bench(fillReader);
        const auto order = bench.order();
        QSignalSpy updated(order.get(), &DOrder::resultUpdated);
        QSignalSpy finished(order.get(), &DOrder::finished);
        QCOMPARE(order->state(), DOrder::State::Waiting);
        order->start();
        QCOMPARE(order->state(), DOrder::State::Running);
        QCOMPARE(order->results(), (QVariantMap{{"value"_s, QVariant()}}));
        bench.device->reply(bench.device->lastId(), value(7));
        deliver();
        QCOMPARE(order->state(), DOrder::State::Finished);
        QVERIFY(order->isSuccessful());
        QVERIFY(!order->failure());
        QCOMPARE(order->results(), value(7));
        QCOMPARE(updated.count(), 1);
        QCOMPARE(updated.at(0).at(0).toString(), "value"_s);
        QCOMPARE(updated.at(0).at(1).value<QVariant>(), QVariant(7));
        QCOMPARE(finished.count(), 1);
        QCOMPARE(finished.at(0), QVariantList{true});
    }

    void aRejectedReplyFailsAnOrderWithOtherRequestsPending()
    {
        Workbench bench([](CommandScript& script) {
            script.execute = [](ScriptedCommand& command) {
                command.send("getValue"_s);
                command.send("getValue"_s);
                return true;
            };
            script.onReply = [](ScriptedCommand&, quint64, const QVariantMap&) { return false; };
        });
        const auto order = bench.order();
        order->start();
        const quint64 other = bench.device->requests.at(0).id;
        bench.device->reply(bench.device->lastId(), {});
        deliver();
        QCOMPARE(order->failure().text, "reply rejected"_s);
        QCOMPARE(bench.device->cancelled, QVector<quint64>{other});
    }

    void aListeningOrderCountsRejectedRepliesAndGoesOn()
    {
        Workbench bench(fillListener);
        const auto order = bench.order();
        QSignalSpy events(order.get(), &DOrder::eventReceived);
        order->start();
        const quint64 id = bench.device->lastId();
        QCOMPARE(order->rejectedReplies(), 0);
        bench.device->reply(id, {});
        bench.device->reply(id, value(1));
        bench.device->reply(id, {});
        deliver();
        QCOMPARE(order->rejectedReplies(), 2);
        QCOMPARE(order->state(), DOrder::State::Running);
        QCOMPARE(events.count(), 1);
        QCOMPARE(order->results(), value(1));
    }

    void aListeningOrderCountsTheRejectedReplyOfAOneShotRequestToo()
    {
        Workbench bench([](CommandScript& script) {
            script.stopName = "rest"_s;
            script.execute = [](ScriptedCommand& command) {
                command.send("listenEvents"_s);
                command.send("getValue"_s);
                return true;
            };
            script.onReply = [](ScriptedCommand&, quint64, const QVariantMap&) { return false; };
        });
        const auto order = bench.order();
        order->start();
        bench.device->reply(bench.device->lastId(), {});
        deliver();
        QCOMPARE(order->state(), DOrder::State::Running);
        QCOMPARE(order->rejectedReplies(), 1);
    }

    void eventsOfAListeningOrderAreTheResultsOrTheWholeReply()
    {
        Workbench bench(fillListener);
        const auto order = bench.order();
        QSignalSpy updated(order.get(), &DOrder::resultUpdated);
        QSignalSpy events(order.get(), &DOrder::eventReceived);
        order->start();
        bench.device->reply(bench.device->lastId(), value(3));
        deliver();
        QCOMPARE(events.count(), 1);
        QCOMPARE(events.at(0).at(0).toMap(), value(3));
        bench.script->onReply = [](ScriptedCommand& command, quint64, const QVariantMap& reply) {
            command.commandSetReply(reply);
            return true;
        };
        const QVariantMap whole{{"value"_s, 4}, {"other"_s, "x"_s}};
        bench.device->reply(bench.device->lastId(), whole);
        deliver();
        QCOMPARE(events.count(), 2);
        QCOMPARE(events.at(1).at(0).toMap(), whole);
        QCOMPARE(updated.count(), 2);
        QCOMPARE(order->results(), value(4));
    }

    void anEventHasTheTimeOfItsReply_data()
    {
        QTest::addColumn<bool>("whole");
        QTest::newRow("result by result") << false;
        QTest::newRow("as a whole reply") << true;
    }

    void anEventHasTheTimeOfItsReply()
    {
        QFETCH(bool, whole);
        Workbench bench(fillListener);
        if (whole) {
            bench.script->onReply = [](ScriptedCommand& command, quint64, const QVariantMap& reply) {
                command.commandSetReply(reply);
                return true;
            };
        }
        const auto order = bench.order();
        QVector<qint64> times;
        connect(order.get(), &DOrder::eventReceived, this,
                [&](const QVariantMap&, qint64 timeUs) { times.append(timeUs); });
        order->start();
        const QVector<qint64> told = {0, 123456, 123457};
        for (const qint64 timeUs : told) {
            bench.device->reply(bench.device->lastId(), value(1), timeUs);
        }
        bench.scheduler.advance(500000);
        deliver();
        QCOMPARE(times, told);
    }

    void anEventOfACommandsOwnIsTrueNow()
    {
        Workbench bench([](CommandScript& script) {
            fillListener(script);
            script.execute = [](ScriptedCommand& command) {
                QTimer::singleShot(1, &command, [&command] { command.commandUpdateResult("value"_s, 1); });
                return command.send("listenEvents"_s) != 0;
            };
        });
        const auto order = bench.order();
        QVector<qint64> times;
        connect(order.get(), &DOrder::eventReceived, this,
                [&](const QVariantMap&, qint64 timeUs) { times.append(timeUs); });
        order->start();
        bench.device->reply(bench.device->lastId(), value(1), 7);
        deliver();
        bench.scheduler.advance(300);
        QTRY_COMPARE(times, (QVector<qint64>{7, 300}));
    }

    void aReplyOfAOneShotOrderIsNoEvent()
    {
        Workbench bench(fillReader);
        const auto order = bench.order();
        QSignalSpy events(order.get(), &DOrder::eventReceived);
        order->start();
        bench.device->reply(bench.device->lastId(), value(3));
        deliver();
        QCOMPARE(events.count(), 0);
    }

    void onlyDeclaredResultsAreStored()
    {
        bool stored = true;
        Workbench bench([&](CommandScript& script) {
            fillReader(script);
            script.onReply = [&](ScriptedCommand& command, quint64, const QVariantMap&) {
                stored = command.commandUpdateResult("colour"_s, 1);
                return command.commandUpdateResult("value"_s, 2);
            };
        });
        const auto order = bench.order();
        order->start();
        bench.device->reply(bench.device->lastId(), {});
        deliver();
        QVERIFY(!stored);
        QCOMPARE(order->results(), value(2));
    }

    void aReplyWithoutADelegateIsAccepted()
    {
        Workbench bench([](CommandScript& script) {
            script.execute = [](ScriptedCommand& command) {
                command.addInstruction("device"_s, "setValues"_s, {}, 0, {});
                return true;
            };
        });
        const auto order = bench.order();
        order->start();
        bench.device->reply(bench.device->lastId(), {});
        deliver();
        QVERIFY(order->isSuccessful());
    }

    void aReplyToAnInstructionThatIsNotPendingIsRefused()
    {
        bool accepted = true;
        Workbench bench([&](CommandScript& script) {
            script.execute = [&](ScriptedCommand& command) {
                const quint64 id = command.send("getValue"_s);
                accepted = command.setReply(id + 1000, {});
                return true;
            };
        });
        bench.order()->start();
        QVERIFY(!accepted);
    }

    void theRequestKeepsItsInstructionArgumentsAndTarget()
    {
        Workbench bench(fillReader);
        const auto order = bench.order();
        order->start();
        QCOMPARE(bench.device->instructions(), QStringList{"getValue"_s});
        QCOMPARE(bench.device->requests.at(0).arguments, (QVariantMap{{"channel"_s, "line0"_s}}));
    }

    void anUnknownTargetFailsTheOrderFromTheEventLoop()
    {
        quint64 id = 0;
        Workbench bench([&](CommandScript& script) {
            script.execute = [&](ScriptedCommand& command) {
                id = command.sendTo("printer"_s, "getValue"_s);
                return true;
            };
        });
        const auto order = bench.order();
        order->start();
        QVERIFY(id > 0);
        QCOMPARE(order->state(), DOrder::State::Running);
        deliver();
        QCOMPARE(order->failure().text, "unknown target \"printer\" of \"getValue\""_s);
        QVERIFY(bench.device->requests.isEmpty());
    }

    void initTestCase()
    {
        Workbench bench([](CommandScript& script) {
            script.execute = [](ScriptedCommand& command) {
                s_firstInstruction = command.send("getValue"_s);
                return true;
            };
        });
        bench.order()->start();
    }

private:
    static inline quint64 s_firstInstruction = 0;
};

QTEST_GUILESS_MAIN(TestOrderReplies)

#include "test_order_replies.moc"
