#include "common_scripts.h"
#include "workbench.h"

#include <QtTest>

class TestOrderReplies : public QObject
{
    Q_OBJECT

    static QVariantMap value(int level) { return {{"value"_s, level}}; }
    static bool reject(ScriptedCommand&, quint64, const QVariantMap&) { return false; }

private Q_SLOTS:
    void initTestCase()
    {
        Workbench bench;
        bench.script->execute = [this](ScriptedCommand& command) {
            m_firstInstruction = command.send("getValue"_s);
            return true;
        };
        bench.start();
    }

    void aFreshProcessNumbersItsFirstInstructionOne() { QCOMPARE(m_firstInstruction, quint64{1}); }

    void repliesReachTheDelegateFromTheEventLoopOnly()
    {
        int replies = 0;
        Workbench bench(fillReader);
        bench.script->onReply = [&](ScriptedCommand&, quint64, const QVariantMap&) { return ++replies > 0; };
        bench.device->onRequest = [&](const auto& request) { bench.device->reply(request.id, value(1)); };
        const auto order = bench.start();
        QCOMPARE(replies, 0);
        deliver();
        QCOMPARE(replies, 1);
    }

    void instructionsAreNumberedApartAndNeverZero()
    {
        QVector<quint64> given;
        QVector<quint64> answered;
        Workbench bench;
        bench.script->execute = [&](ScriptedCommand& command) {
            given = {command.send("getValue"_s), command.send("getValue"_s)};
            return true;
        };
        bench.script->onReply = [&](ScriptedCommand&, quint64 id, const QVariantMap&) {
            answered.append(id);
            return true;
        };
        const auto order = bench.start();
        QVERIFY(given.at(0) >= 1);
        QVERIFY(given.at(1) > given.at(0));
        bench.device->reply(given.at(1), {});
        bench.device->reply(given.at(0), {});
        deliver();
        QCOMPARE(answered, (QVector<quint64>{given.at(1), given.at(0)}));
        const auto second = bench.start();
        QVERIFY(!answered.contains(given.at(0)));
    }

    void aReplyUpdatesResultsAndEndsTheOrder()
    {
        Workbench bench(fillReader);
        const auto order = bench.order();
        QSignalSpy updated(order.get(), &DOrder::resultUpdated);
        QCOMPARE(order->state(), DOrder::State::Waiting);
        order->start();
        QCOMPARE(order->state(), DOrder::State::Running);
        QCOMPARE(order->results(), (QVariantMap{{"value"_s, QVariant()}}));
        bench.answer(value(7));
        QCOMPARE(order->state(), DOrder::State::Finished);
        QVERIFY(order->isSuccessful());
        QVERIFY(!order->failure());
        QCOMPARE(order->results(), value(7));
        QCOMPARE(updated.count(), 1);
        QCOMPARE(updated.at(0).at(0).toString(), "value"_s);
        QCOMPARE(updated.at(0).at(1).value<QVariant>(), QVariant(7));
        QCOMPARE(bench.ended, QVector<bool>{true});
    }

    void theResultsBeginWithTheirDeclaredValues()
    {
        Workbench bench([](CommandScript& script) {
            fillReader(script);
            script.results = {{"doneOk"_s, "bool"_s, "Job done"_s, false}, {"value"_s, "ui16"_s, "V"_s, 5}};
        });
        const auto order = bench.order();
        QVERIFY(order->results().isEmpty());
        order->start();
        QCOMPARE(order->results(), (QVariantMap{{"doneOk"_s, false}, {"value"_s, 5}}));
    }

    void lostEventsAreToldWhereTheyAreMissing()
    {
        Workbench bench(fillListener);
        const auto order = bench.start();
        QStringList heard;
        connect(order.get(), &DOrder::eventReceived, this, [&] { heard.append("event"_s); });
        connect(order.get(), &DOrder::eventsLost, this,
                [&](quint64 count) { heard.append(QString::number(count)); });
        bench.device->reply(bench.device->lastId(), value(1));
        bench.device->tellLost(bench.device->lastId(), 3);
        bench.answer(value(0));
        QCOMPARE(heard, (QStringList{"event"_s, "3"_s, "event"_s}));
        bench.device->tellLost(bench.device->lastId(), 1);
        order->stop();
        deliver();
        QCOMPARE(heard.size(), 3);
    }

    void aListeningOrderCountsRejectedRepliesAndGoesOn()
    {
        Workbench bench(fillListener);
        const auto order = bench.start();
        QSignalSpy events(order.get(), &DOrder::eventReceived);
        QCOMPARE(order->rejectedReplies(), 0);
        bench.answer();
        bench.answer(value(1));
        bench.answer();
        QCOMPARE(order->rejectedReplies(), 2);
        QCOMPARE(order->state(), DOrder::State::Running);
        QCOMPARE(events.count(), 1);
        QCOMPARE(order->results(), value(1));
    }

    void aListeningOrderCountsTheRejectedReplyOfAOneShotRequestToo()
    {
        Workbench bench(fillListener);
        bench.script->execute = sends({"listenEvents"_s, "getValue"_s});
        bench.script->onReply = reject;
        const auto order = bench.start();
        bench.answer();
        QCOMPARE(order->state(), DOrder::State::Running);
        QCOMPARE(order->rejectedReplies(), 1);
    }

    void eventsOfAListeningOrderAreTheResultsOrTheWholeReply()
    {
        Workbench bench(fillListener);
        const auto order = bench.start();
        QSignalSpy updated(order.get(), &DOrder::resultUpdated);
        QSignalSpy events(order.get(), &DOrder::eventReceived);
        bench.answer(value(3));
        QCOMPARE(events.count(), 1);
        QCOMPARE(events.at(0).at(0).toMap(), value(3));
        bench.script->onReply = takeWhole;
        const QVariantMap whole{{"value"_s, 4}, {"other"_s, "x"_s}};
        bench.answer(whole);
        QCOMPARE(events.count(), 2);
        QCOMPARE(events.at(1).at(0).toMap(), whole);
        QCOMPARE(updated.count(), 2);
        QCOMPARE(order->results(), value(4));
    }

    void anEventHasTheTimeOfItsReply()
    {
        for (const bool whole : {false, true}) {
            Workbench bench(fillListener);
            if (whole) {
                bench.script->onReply = takeWhole;
            }
            const auto order = bench.start();
            QVector<qint64> times;
            connect(order.get(), &DOrder::eventReceived, this,
                    [&](const QVariantMap&, qint64 timeUs) { times.append(timeUs); });
            const QVector<qint64> told = {0, 123456, 123457};
            for (const qint64 timeUs : told) {
                bench.device->reply(bench.device->lastId(), value(1), timeUs);
            }
            bench.scheduler.advance(500000);
            deliver();
            QCOMPARE(times, told);
        }
    }

    void anEventOfACommandsOwnIsTrueNow()
    {
        Workbench bench(fillListener);
        const auto order = bench.start();
        QVector<qint64> times;
        connect(order.get(), &DOrder::eventReceived, this,
                [&](const QVariantMap&, qint64 timeUs) { times.append(timeUs); });
        bench.device->reply(bench.device->lastId(), value(1), 7);
        deliver();
        bench.scheduler.advance(300);
        QTimer::singleShot(0, bench.script->latest, [&] {
            bench.script->latest->commandUpdateResult("value"_s, 1); // of no reply
        });
        QTRY_COMPARE(times, (QVector<qint64>{7, 300}));
    }

    void aReplyOfAOneShotOrderIsNoEvent()
    {
        Workbench bench(fillReader);
        const auto order = bench.start();
        QSignalSpy events(order.get(), &DOrder::eventReceived);
        bench.answer(value(3));
        QCOMPARE(events.count(), 0);
    }

    void onlyDeclaredResultsAreStored()
    {
        bool stored = true;
        Workbench bench(fillReader);
        bench.script->onReply = [&](ScriptedCommand& command, quint64, const QVariantMap&) {
            stored = command.commandUpdateResult("colour"_s, 1);
            return command.commandUpdateResult("value"_s, 2);
        };
        const auto order = bench.start();
        bench.answer();
        QVERIFY(!stored);
        QCOMPARE(order->results(), value(2));
    }

    void aReplyWithoutADelegateIsAccepted()
    {
        Workbench bench;
        bench.script->execute = [](ScriptedCommand& command) {
            return command.addInstruction("device"_s, "setValues"_s, {}, 0, {}) != 0;
        };
        const auto order = bench.start();
        bench.answer();
        QVERIFY(order->isSuccessful());
    }

    void aReplyToAnInstructionThatIsNotPendingIsRefused()
    {
        Workbench bench;
        bench.script->execute = sends({"getValue"_s, "getValue"_s});
        const auto order = bench.start();
        const quint64 over = bench.device->requests.at(0).id;
        QVERIFY(bench.script->latest->setReply(over, {}));
        bench.device->reply(over, {});
        deliver();
        QCOMPARE(order->state(), DOrder::State::Running);
        QVERIFY(!bench.script->latest->setReply(over, {}));
        QVERIFY(!bench.script->latest->setReply(over + 1000, {}));
    }

    void theRequestKeepsItsInstructionAndArguments()
    {
        Workbench bench(fillReader);
        const auto order = bench.start();
        QCOMPARE(bench.device->instructions(), QStringList{"getValue"_s});
        QCOMPARE(bench.device->requests.at(0).arguments, (QVariantMap{{"channel"_s, "line0"_s}}));
    }

    void theTimeLimitCountsFromTheSendingOfEachRequest()
    {
        Workbench bench(fillReader);
        bench.script->onReply = [](ScriptedCommand& command, quint64, const QVariantMap&) {
            return command.send("setValues"_s, {}, 10) != 0;
        };
        const auto order = bench.start();
        bench.scheduler.advance(50000);
        bench.answer();
        bench.scheduler.advance(9999);
        QCOMPARE(order->state(), DOrder::State::Running);
        bench.scheduler.advance(1);
        QCOMPARE(order->failure().text.english(), "no reply to \"setValues\" within 10 ms"_s);
        QCOMPARE(bench.device->cancelled, QVector<quint64>{bench.device->lastId()});
    }

    void aListeningOrderWaitsForItsFirstReplyOnly()
    {
        Workbench bench(fillListener);
        bench.script->execute = [](ScriptedCommand& command) {
            return command.send("listenEvents"_s, {}, 10) != 0;
        };
        const auto order = bench.start();
        bench.answer(value(1));
        const auto silent = bench.start();
        bench.scheduler.advance(1000000);
        QCOMPARE(silent->failure().text.english(), "no reply to \"listenEvents\" within 10 ms"_s);
        QCOMPARE(order->state(), DOrder::State::Running);
    }

private:
    quint64 m_firstInstruction = 0;
};

QTEST_GUILESS_MAIN(TestOrderReplies)
#include "test_order_replies.moc"
