#include "common_scripts.h"
#include "rows.h"
#include "workbench.h"

#include <utilities/d_timer.h>

using Report = bool (*)(ScriptedCommand&);
Q_DECLARE_METATYPE(Report)

namespace {

const QVariantMap c_both{{"one"_s, 1}, {"two"_s, 2}};
const QString c_missing = "the command waits for nothing more, without having reported one, two"_s;

void declareTwoResults(CommandScript& script)
{
    script.results = {{"one"_s, "int"_s, "One"_s, 0}, {"two"_s, "int"_s, "Two"_s, 0}};
}

bool reportOneByOne(ScriptedCommand& command)
{
    return command.commandUpdateResult("one"_s, 1) && command.commandUpdateResult("two"_s, 2);
}

bool reportWhole(ScriptedCommand& command)
{
    command.commandSetReply(c_both);
    return true;
}

bool reportNothing(ScriptedCommand&)
{
    return false;
}

/// Fails the test unless the order has ended once, through finishTheCommand, and let its command go.
void verifyEndedOnce(const Workbench& bench, const DOrder& order)
{
    QCOMPARE(order.state(), DOrder::State::Finished);
    QCOMPARE(bench.ended, QVector<bool>{order.isSuccessful()});
    QCOMPARE(bench.script->outcomes, bench.ended);
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
        Workbench bench(declareTwoResults);
        bench.script->execute = reportOneByOne;
        const auto order = bench.start();
        QVERIFY(order->isSuccessful());
        QCOMPARE(order->results(), c_both);
        verifyEndedOnce(bench, *order);
    }

    void theOrderEndsWhenEveryResultIsThereAndNothingIsPending()
    {
        Workbench bench(declareTwoResults);
        bench.script->execute = sends({"getValue"_s, "getValue"_s});
        bench.script->onReply = takeWhole;
        const auto order = bench.start();
        bench.device->reply(bench.device->requests.at(0).id, c_both);
        deliver();
        QCOMPARE(order->state(), DOrder::State::Running);
        bench.answer();
        QVERIFY(order->isSuccessful());
        verifyEndedOnce(bench, *order);
    }

    void aCommandMayReportFromItsTimer_data()
    {
        const Rows<Report, QString> row("report", "failure");
        row("result by result", &reportOneByOne, QString());
        row("as a whole reply", &reportWhole, QString());
        row("nothing", &reportNothing, c_missing);
    }
    void aCommandMayReportFromItsTimer()
    {
        QFETCH(Report, report);
        QFETCH(QString, failure);
        Workbench bench(declareTwoResults);
        bench.script->execute = [report](ScriptedCommand& command) {
            command.send("setValues"_s);
            auto* timer = new DTimer(&command);
            timer->setSingleShot(true);
            connect(timer, &QTimer::timeout, &command, [&command, report] { report(command); });
            timer->start(5);
            return true;
        };
        const auto order = bench.start();
        QSignalSpy finished(order.get(), &DOrder::finished);
        bench.answer();
        QCOMPARE(order->state(), DOrder::State::Running);
        QVERIFY(finished.wait());
        QCOMPARE(order->failure().text.english(), failure);
        deliver();
        verifyEndedOnce(bench, *order);
    }

    void theCommandMayFinishItself_data()
    {
        const Rows<bool, QString> row("ok", "reason");
        row("with success", true, QString());
        row("as failed", false, "the command failed");
    }
    void theCommandMayFinishItself()
    {
        QFETCH(bool, ok);
        QFETCH(QString, reason);
        Workbench bench(declareTwoResults);
        bench.script->execute = sends({"listenEvents"_s});
        bench.script->onReply = [ok](ScriptedCommand& command, quint64, const QVariantMap&) {
            bool outcome = ok;
            command.commandFinish(outcome);
            return true;
        };
        const auto order = bench.start();
        bench.answer();
        QCOMPARE(order->isSuccessful(), ok);
        QCOMPARE(order->failure().text.english(), reason);
        verifyEndedOnce(bench, *order);
    }

    void aListeningOrderRunsUntilItIsStopped()
    {
        Workbench bench(fillListener);
        const auto order = bench.start();
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
        verifyEndedOnce(bench, *order);
    }

    void theCommandMayStopItsOwnListening()
    {
        Workbench bench(fillListener);
        bench.script->onReply = [](ScriptedCommand& command, quint64 id, const QVariantMap& reply) {
            command.stopTheInstruction(id);
            return command.commandUpdateResult("value"_s, reply.value("value"_s));
        };
        const auto order = bench.start();
        bench.device->reply(bench.device->lastId(), {{"value"_s, 1}});
        bench.answer({{"value"_s, 2}});
        QVERIFY(order->isSuccessful());
        QCOMPARE(order->results(), (QVariantMap{{"value"_s, 1}}));
        verifyEndedOnce(bench, *order);
    }

    void anOrderEndsAfterItsCommandStoppedItsListeningOfItsOwn()
    {
        Workbench bench(fillListener);
        const auto order = bench.start();
        bench.answer({{"value"_s, 1}});
        bench.script->latest->stopTheInstruction(bench.device->lastId());
        QCOMPARE(order->state(), DOrder::State::Running);
        deliver();
        QVERIFY(order->isSuccessful());
        verifyEndedOnce(bench, *order);
    }

    void nothingIsStoredOrSentOnceTheOrderEnds()
    {
        bool stored = true;
        quint64 sent = 1;
        Workbench bench(fillListener);
        bench.script->onFinish = [&](ScriptedCommand& command) {
            stored = command.commandUpdateResult("value"_s, 9);
            sent = command.send("getValue"_s);
            command.commandSetReply({{"value"_s, 9}});
        };
        const auto order = bench.start();
        QSignalSpy updated(order.get(), &DOrder::resultUpdated);
        QSignalSpy events(order.get(), &DOrder::eventReceived);
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
        const auto order = bench.start();
        bool goneBeforeTheEndIsTold = false;
        connect(order.get(), &DOrder::finished, this,
                [&] { goneBeforeTheEndIsTold = bench.script->latest.isNull(); });
        QVERIFY(!bench.script->latest.isNull());
        order->stop();
        QVERIFY(goneBeforeTheEndIsTold);
    }

    void twoOrdersOfOneCommandShareNothing()
    {
        Workbench bench(fillListener);
        const auto first = bench.start();
        const quint64 id = bench.device->lastId();
        const auto second = bench.start();
        QVERIFY(first->id() >= 1);
        QVERIFY(second->id() > first->id());
        QCOMPARE(first->commandName(), "work"_s);
        QCOMPARE(first->tool(), bench.tool.get());
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
